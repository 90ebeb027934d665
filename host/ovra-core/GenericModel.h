// SPDX-License-Identifier: MIT
/// \file
/// Nodes with a parent and children. The environment's model and its global resources are made of them.
///
///   - GenericModelNode                    a node
///   - aspects::Parent, aspects::Children  its place in the tree
///   - KeyedChildren                       children by key, as most nodes hold them
///   - GenericModelNodeChildrenIterator    iterates over a snapshot of children
///   - Guarded                             a field that one thread may read while another writes it
///
/// The environment and the library's commands add and remove nodes. A front end only reads them: it looks a
/// node up, iterates over children, and keeps boost::weak_ptr to what it shows. A node that was removed stays
/// valid while somebody holds it, but has no parent.
///
/// Any thread may call all functions, except those of an iterator. None of them waits for another operation
/// or calls foreign code under a lock; std::bad_alloc is the only error unless a function says otherwise. The
/// next read sees a change; an iterator that was created before the change continues over its snapshot. So a
/// loop may remove the nodes that it visits.
///
/// A node type derives from GenericModelNode and holds its children in a KeyedChildren:
///
/// \code
/// class Shelf : public GenericModelNode
/// {
/// public:
///     void add(int number, const boost::shared_ptr<Book>& book)
///     {
///         m_books.add(number, book, weak_from_this());
///     }
///     auto getBooks() const { return m_books.iterate(); }
///     KeyedChildren<int, Book>& _children() override { return m_books; }
///
/// private:
///     KeyedChildren<int, Book> m_books;
/// };
/// \endcode
#pragma once

#include "ovra-core/Export.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <map>
#include <mutex>
#include <stdexcept>
#include <utility>
#include <vector>

namespace ovra::core::models {

class GenericModelNode;

/// A value with its own lock, for fields of nodes.
template <class T>
class Guarded
{
public:
    Guarded() = default;
    explicit Guarded(T value) : m_value(std::move(value)) {}

    /// A copy of the value.
    T get() const
    {
        const std::lock_guard lock(m_mutex);
        return m_value;
    }

    /// Replaces the value. The previous one is destroyed outside the lock, so its destructor may read the
    /// field.
    void set(T value)
    {
        const std::lock_guard lock(m_mutex);
        std::swap(m_value, value);
    }

private:
    mutable std::mutex m_mutex;
    T m_value{};
};

namespace aspects {

/// The node that holds a node: a weak link, so that holding a child does not keep the tree above it alive.
class OVRA_CORE_API Parent
{
public:
    /// Empty for a root, and for a node that was removed from its parent.
    boost::shared_ptr<GenericModelNode> get() const;
    /// For classes that hold nodes; KeyedChildren calls it for each node that it adds or removes.
    void set(const boost::weak_ptr<GenericModelNode>& parent);

private:
    Guarded<boost::weak_ptr<GenericModelNode>> m_parent;
};

/// The nodes that a node holds.
class OVRA_CORE_API Children
{
public:
    virtual ~Children();

    /// Removes all children; they have no parent afterwards. For commands: a front end that clears children
    /// of a board destroys what the runtime still uses.
    virtual void clear() = 0;
    /// Number of children.
    virtual std::size_t count() const = 0;

protected:
    /// Records the call in the host's journal. Each implementation of clear() calls it first, so that a test
    /// can make clear() fail before it has an effect.
    void aboutToClear() const;
};

} // namespace aspects

/// Base of every node. Nodes exist only in a boost::shared_ptr: each class has a create function, which never
/// returns null.
class OVRA_CORE_API GenericModelNode : public boost::enable_shared_from_this<GenericModelNode>
{
public:
    virtual ~GenericModelNode();
    GenericModelNode(const GenericModelNode&) = delete;
    GenericModelNode& operator=(const GenericModelNode&) = delete;

    /// The parent's place in this node. Valid as long as the node.
    aspects::Parent& _parent();

    /// The children, valid as long as the node; for a node type without children an empty set.
    virtual aspects::Children& _children();

protected:
    GenericModelNode();

private:
    aspects::Parent m_parent;
};

/// Iterates over the children that existed when it was created:
/// `for (auto it = board->getDmas(); it->hasNext(); it->advance()) use(it->current());`
/// It keeps these children alive, also those that are removed meanwhile. Use one iterator on one thread only.
/// It has no begin and end: a range-based loop does not take it.
template <class Node>
class GenericModelNodeChildrenIterator
{
public:
    using Snapshot = std::vector<boost::shared_ptr<Node>>;

    explicit GenericModelNodeChildrenIterator(boost::shared_ptr<const Snapshot> snapshot)
        : m_snapshot(std::move(snapshot)),
          m_current(m_snapshot->data()),
          m_end(m_current + m_snapshot->size())
    {}

    bool hasNext() const { return m_current != m_end; }
    /// The current child, never null. Requires hasNext(). The reference is valid as long as the iterator.
    const boost::shared_ptr<Node>& current() const { return *m_current; }
    /// Moves to the next child. Requires hasNext().
    void advance() { ++m_current; }

private:
    boost::shared_ptr<const Snapshot> m_snapshot;
    const boost::shared_ptr<Node>* m_current;
    const boost::shared_ptr<Node>* m_end;
};

/// Children of one type, in ascending order of their keys; texts in the order of their bytes. Iterators share
/// one immutable snapshot until the next change, so iterating over an unchanged set copies nothing.
template <class Key, class Node>
class KeyedChildren final : public aspects::Children
{
public:
    using Iterator = GenericModelNodeChildrenIterator<Node>;

    /// Adds \p node; replaces a node under the same key, which then has no parent. \p owner becomes the
    /// parent.
    /// \throws std::invalid_argument  if \p node is null; nothing changes
    void add(const Key& key, const boost::shared_ptr<Node>& node,
             const boost::weak_ptr<GenericModelNode>& owner)
    {
        if (!node)
            throw std::invalid_argument("KeyedChildren::add: there is no node");
        boost::shared_ptr<Node> displaced;
        {
            const std::lock_guard lock(m_mutex);
            m_snapshot.reset();
            displaced = std::exchange(m_nodes[key], node);
            node->_parent().set(owner);
        }
        if (displaced && displaced != node)
            displaced->_parent().set({});
    }

    /// Removes a node, which then has no parent. False if there is none under \p key.
    bool remove(const Key& key)
    {
        boost::shared_ptr<Node> removed;
        {
            const std::lock_guard lock(m_mutex);
            const auto found = m_nodes.find(key);
            if (found == m_nodes.end())
                return false;
            m_snapshot.reset();
            removed = found->second;
            m_nodes.erase(found);
        }
        removed->_parent().set({});
        return true;
    }

    void clear() override
    {
        aboutToClear();
        std::map<Key, boost::shared_ptr<Node>> removed;
        boost::shared_ptr<const typename Iterator::Snapshot> oldSnapshot;
        {
            const std::lock_guard lock(m_mutex);
            oldSnapshot.swap(m_snapshot);
            removed.swap(m_nodes);
        }
        for (const auto& entry : removed)
            entry.second->_parent().set({});
    }

    std::size_t count() const override
    {
        const std::lock_guard lock(m_mutex);
        return m_nodes.size();
    }

    /// Empty if there is no node under \p key.
    boost::shared_ptr<Node> find(const Key& key) const
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_nodes.find(key);
        return found == m_nodes.end() ? boost::shared_ptr<Node>() : found->second;
    }

    /// An iterator over the present children, never null.
    boost::shared_ptr<Iterator> iterate() const
    {
        const std::lock_guard lock(m_mutex);
        if (!m_snapshot) {
            auto snapshot = boost::make_shared<typename Iterator::Snapshot>();
            snapshot->reserve(m_nodes.size());
            for (const auto& entry : m_nodes)
                snapshot->push_back(entry.second);
            m_snapshot = snapshot;
        }
        return boost::make_shared<Iterator>(m_snapshot);
    }

private:
    mutable std::mutex m_mutex;
    std::map<Key, boost::shared_ptr<Node>> m_nodes;
    mutable boost::shared_ptr<const typename Iterator::Snapshot> m_snapshot;
};

/// A node that only holds children of one type, such as a board's DMA channels.
template <class Key, class Node>
class EntryNode final : public GenericModelNode
{
public:
    KeyedChildren<Key, Node>& _children() override { return m_children; }
    void add(const Key& key, const boost::shared_ptr<Node>& node)
    {
        m_children.add(key, node, weak_from_this());
    }

private:
    KeyedChildren<Key, Node> m_children;
};

} // namespace ovra::core::models
