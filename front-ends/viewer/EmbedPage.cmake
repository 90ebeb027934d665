# cmake -D FOLDER=<page> -D OUTPUT=<source> -P EmbedPage.cmake
#
# Writes a C++ source that holds the page's files.

set(types_html "text/html; charset=utf-8")
set(types_css "text/css; charset=utf-8")
set(types_js "text/javascript; charset=utf-8")
set(types_svg "image/svg+xml")

file(GLOB files RELATIVE "${FOLDER}" "${FOLDER}/*.html" "${FOLDER}/*.css" "${FOLDER}/*.js" "${FOLDER}/*.svg")
set(arrays "")
set(entries "")
set(number 0)
foreach(file IN LISTS files)
    file(READ "${FOLDER}/${file}" bytes HEX)
    string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
    string(REGEX REPLACE "(([^,]*,){20})" "\\1\n    " bytes "${bytes}")
    cmake_path(GET file EXTENSION LAST_ONLY extension)
    string(SUBSTRING "${extension}" 1 -1 extension)
    string(APPEND arrays "constexpr char FILE_${number}[] = {\n    ${bytes}\n};\n")
    string(APPEND entries
        "        {\"/${file}\", \"${types_${extension}}\", {FILE_${number}, sizeof(FILE_${number})}},\n")
    math(EXPR number "${number} + 1")
endforeach()

file(WRITE "${OUTPUT}" "// Generated from the files of front-ends/viewer/page.
#include \"server/HttpPolicy.h\"

namespace ovra::viewer {

namespace {

${arrays}
} // namespace

const std::vector<PageFile>& pageFiles()
{
    static const std::vector<PageFile> FILES = {
${entries}    };
    return FILES;
}

} // namespace ovra::viewer
")
