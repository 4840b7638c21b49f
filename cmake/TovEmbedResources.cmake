# cmake -DFOLDER=... -DOUTPUT=... -DSYMBOL=... -P: writes every file of FOLDER into OUTPUT as C++ arrays.
file(GLOB_RECURSE files RELATIVE "${FOLDER}" "${FOLDER}/*")
list(SORT files)
set(arrays "")
set(rows "")
set(number 0)
foreach(name IN LISTS files)
    file(READ "${FOLDER}/${name}" bytes HEX)
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
    string(REGEX REPLACE "(0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],0x[0-9a-f][0-9a-f],)" "\\1\n" bytes "${bytes}")
    string(APPEND arrays "unsigned char const file${number}[] = {\n${bytes}0};\n")
    string(APPEND rows "    {\"${name}\", file${number}, sizeof file${number} - 1},\n")
    math(EXPR number "${number} + 1")
endforeach()
if(SYMBOL)
    set(declaration "namespace tov {\nextern TovResourceTable const ${SYMBOL};\nTovResourceTable const ${SYMBOL}{rows, ${number}};\n}\n")
else()
    set(declaration "TOV_RESOURCE_MODULE_SYMBOL = {rows, ${number}};\n")
endif()
file(WRITE "${OUTPUT}.tmp" "// Made from the files of a resource folder; do not edit.
#include <tov310/resources.h>
namespace {
${arrays}
tov::TovResourceTable::File const rows[] = {
${rows}    {nullptr, nullptr, 0}};
}  // namespace
${declaration}")
file(COPY_FILE "${OUTPUT}.tmp" "${OUTPUT}" ONLY_IF_DIFFERENT)
