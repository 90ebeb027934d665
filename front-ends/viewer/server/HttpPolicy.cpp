// SPDX-License-Identifier: MIT
#include "server/HttpPolicy.h"

#include <algorithm>

namespace ovra::viewer {

namespace {

constexpr const char* CONTENT_POLICY =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob:; connect-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

std::vector<std::string> namesOf(const std::string& scheme, unsigned short port)
{
    constexpr unsigned short PORT_OF_HTTP = 80; // browsers leave it out
    const std::string suffix = port == PORT_OF_HTTP ? "" : ":" + std::to_string(port);
    return {scheme + "127.0.0.1" + suffix, scheme + "[::1]" + suffix, scheme + "localhost" + suffix};
}

bool contains(const std::vector<std::string>& list, std::string_view text)
{
    return std::find(list.begin(), list.end(), text) != list.end();
}

HttpAnswer refusal(unsigned status, std::string_view reason)
{
    return {HttpAnswer::Kind::Refusal, status, nullptr, reason};
}

} // namespace

HttpPolicy::HttpPolicy(unsigned short port)
    : m_hosts(namesOf("", port)),
      m_origins(namesOf("http://", port)),
      m_headers{{"Content-Security-Policy", CONTENT_POLICY},
                {"X-Content-Type-Options", "nosniff"},
                {"Cache-Control", "no-store"},
                {"Cross-Origin-Resource-Policy", "same-origin"},
                {"Cross-Origin-Opener-Policy", "same-origin"},
                {"Referrer-Policy", "no-referrer"}}
{}

HttpAnswer HttpPolicy::answer(const HttpRequest& request) const
{
    if (request.repeatedHeader || !contains(m_hosts, request.host))
        return refusal(403, "this is not the host you asked for");
    if (!request.origin.empty() && !contains(m_origins, request.origin))
        return refusal(403, "requests of other pages are not answered");
    if (request.method != "GET")
        return refusal(405, "only GET is answered");
    if (request.hasBody)
        return refusal(413, "a request has no body here");
    if (request.target == "/socket") {
        if (!request.upgrade)
            return refusal(426, "this is a WebSocket");
        if (request.origin.empty())
            return refusal(403, "a WebSocket is for this server's page");
        return {HttpAnswer::Kind::WebSocket, 101, nullptr, {}};
    }
    const std::string_view target = request.target == "/" ? "/index.html" : request.target;
    for (const auto& file : pageFiles())
        if (file.target == target)
            return {HttpAnswer::Kind::File, 200, &file, {}};
    return refusal(404, "there is nothing here");
}

} // namespace ovra::viewer
