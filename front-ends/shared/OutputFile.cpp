// SPDX-License-Identifier: MIT
#include "OutputFile.h"

#include "Paths.h"
#include "RequestError.h"

#include <cerrno>
#include <fstream>
#include <ios>
#include <string>
#include <system_error>

namespace ovra::frontend {

namespace {

std::error_code lastError()
{
    return {errno != 0 ? errno : EIO, std::generic_category()};
}

std::error_code writeBytes(const std::filesystem::path& file, std::string_view bytes)
{
    errno = 0;
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    if (!stream)
        return lastError();
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    return stream ? std::error_code() : lastError();
}

/// A name beside \p file that nothing has yet: a file of the user's stays.
std::filesystem::path freeNameBeside(const std::filesystem::path& file)
{
    std::error_code ignored;
    std::filesystem::path name;
    int number = 0;
    do {
        name = file;
        name += ".new" + (number == 0 ? "" : std::to_string(number));
        ++number;
    } while (std::filesystem::exists(std::filesystem::symlink_status(name, ignored)));
    return name;
}

std::error_code replace(const std::filesystem::path& file, std::string_view bytes)
{
    const auto fresh = freeNameBeside(file);
    std::error_code error = writeBytes(fresh, bytes);
    if (!error)
        std::filesystem::rename(fresh, file, error);
    std::error_code ignored;
    if (error)
        std::filesystem::remove(fresh, ignored);
    return error;
}

/// Keeps a link as a link.
std::error_code replaceTarget(const std::filesystem::path& file, std::string_view bytes)
{
    std::error_code error;
    const auto target = std::filesystem::canonical(file, error);
    return error ? error : replace(target, bytes);
}

} // namespace

void writeFile(const std::filesystem::path& file, std::string_view bytes)
{
    std::error_code error;
    const auto there = std::filesystem::status(file, error).type();
    if (there == std::filesystem::file_type::regular)
        error = replaceTarget(file, bytes);
    else if (there == std::filesystem::file_type::not_found)
        error = replace(file, bytes);
    else if (!error)
        throw RequestError("cannot write " + textOf(file) + ": it is no regular file");
    if (error)
        throw RequestError("cannot write " + textOf(file) + ": " + error.message());
}

} // namespace ovra::frontend
