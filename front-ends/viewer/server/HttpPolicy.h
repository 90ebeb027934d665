/// \file
/// Which HTTP requests are answered, and with what. Nothing in a request is ever a path of the file system.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ovra::viewer {

/// A file of the page, built into the program.
struct PageFile
{
    std::string_view target; ///< "/tile.js"
    std::string_view type;   ///< "text/javascript; charset=utf-8"
    std::string_view content;
};

/// All of them; written at build time.
const std::vector<PageFile>& pageFiles();

struct HttpRequest
{
    std::string_view method;
    std::string_view target;
    std::string_view host;   ///< empty where it is missing
    std::string_view origin; ///< the same
    bool upgrade = false;    ///< wants to become a WebSocket
    bool hasBody = false;
    bool repeatedHeader = false; ///< Host or Origin came more than once
};

struct HttpAnswer
{
    enum class Kind
    {
        File,
        WebSocket,
        Refusal
    };
    Kind kind = Kind::Refusal;
    unsigned status = 0;
    const PageFile* file = nullptr;
    std::string_view reason;
};

/// What a server on one port lets through. Safe from any thread.
class HttpPolicy
{
public:
    explicit HttpPolicy(unsigned short port);

    /// A page's files go to whoever names this server as it is; a WebSocket only to this server's own page.
    HttpAnswer answer(const HttpRequest& request) const;

    struct Header
    {
        std::string_view name;
        std::string_view value;
    };
    /// Stand in every answer.
    const std::vector<Header>& securityHeaders() const { return m_headers; }

private:
    const std::vector<std::string> m_hosts;
    const std::vector<std::string> m_origins;
    const std::vector<Header> m_headers;
};

} // namespace ovra::viewer
