// SPDX-License-Identifier: MIT
// Stand-in for the header of this name: type_info as the compiler lays it out, and what goes with it.
#pragma once
#include <vcruntime_exception.h>

extern "C" {
struct __std_type_info_data
{
    const char* _UndecoratedName;
    const char _DecoratedName[1];
};
union _SLIST_HEADER_stand_in;
struct __type_info_node;
extern __type_info_node __type_info_root_node;
__declspec(dllimport) int __cdecl __std_type_info_compare(__std_type_info_data const* a,
                                                          __std_type_info_data const* b);
__declspec(dllimport) size_t __cdecl __std_type_info_hash(__std_type_info_data const* data);
__declspec(dllimport) char const* __cdecl __std_type_info_name(__std_type_info_data* data, void* root);
}

#pragma warning(push)
class type_info
{
public:
    type_info(type_info const&) = delete;
    type_info& operator=(type_info const&) = delete;
    size_t hash_code() const noexcept { return __std_type_info_hash(&_Data); }
    bool operator==(type_info const& other) const noexcept
    {
        return __std_type_info_compare(&_Data, &other._Data) == 0;
    }
    bool operator!=(type_info const& other) const noexcept
    {
        return __std_type_info_compare(&_Data, &other._Data) != 0;
    }
    bool before(type_info const& other) const noexcept
    {
        return __std_type_info_compare(&_Data, &other._Data) < 0;
    }
    char const* name() const noexcept;
    char const* raw_name() const noexcept { return _Data._DecoratedName; }
    virtual ~type_info() noexcept;

private:
    mutable __std_type_info_data _Data;
};

namespace std {
using ::type_info;
class bad_cast : public exception
{
public:
    bad_cast() noexcept : exception("bad cast", 1) {}
    static bad_cast __construct_from_string_literal(char const* m) noexcept { return bad_cast(m, 1); }

private:
    bad_cast(char const* m, int) noexcept : exception(m, 1) {}
};
class bad_typeid : public exception
{
public:
    bad_typeid() noexcept : exception("bad typeid", 1) {}
    static bad_typeid __construct_from_string_literal(char const* m) noexcept { return bad_typeid(m, 1); }

protected:
    bad_typeid(char const* m, int) noexcept : exception(m, 1) {}
};
class __non_rtti_object : public bad_typeid
{
public:
    static __non_rtti_object __construct_from_string_literal(char const* m) noexcept
    {
        return __non_rtti_object(m, 1);
    }

private:
    __non_rtti_object(char const* m, int) noexcept : bad_typeid(m, 1) {}
};
} // namespace std
