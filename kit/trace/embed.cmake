# Makes page_parts.cpp from the files of page/: cmake -DOUTPUT=... -DFOLDER=... -P embed.cmake
# The files become numbers, because compilers limit the length of a string literal.

function(embed variable)
  set(bytes "")
  foreach(file IN LISTS ARGN)
    file(READ ${FOLDER}/${file} hex HEX)
    string(APPEND bytes ${hex})
  endforeach()
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
  string(REGEX REPLACE "((0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,))" "\\1\n" bytes
    "${bytes}")
  set(code "${code}const unsigned char k${variable}Bytes[] = {\n${bytes}};\n" PARENT_SCOPE)
endfunction()

set(code "")
embed(PageHtml page.html)
embed(StyleCss style.css)
embed(ScriptJs model.js summary.js overview.js diagram.js main.js)

set(views "")
foreach(name IN ITEMS PageHtml StyleCss ScriptJs)
  string(APPEND views "const std::string_view k${name}(\n"
    "    reinterpret_cast<const char*>(k${name}Bytes), sizeof k${name}Bytes);\n")
endforeach()

file(CONFIGURE OUTPUT ${OUTPUT} @ONLY CONTENT [[
#include "trace/page_parts.h"

namespace PlenxTrace {
namespace {

@code@
}  // namespace

@views@
}  // namespace PlenxTrace
]])
