# Writes SOURCE, a C++ file that holds the texts of FILES, which are joined by "|"; index.html is served as "/".
set(type_html "text/html; charset=utf-8")
set(type_css "text/css; charset=utf-8")
set(type_js "text/javascript; charset=utf-8")
set(type_svg "image/svg+xml")

string(REPLACE "|" ";" files "${FILES}")
set(entries "")
foreach(file ${files})
    get_filename_component(name "${file}" NAME)
    string(REGEX REPLACE "^.*\\." "" extension "${name}")
    set(path "/inspector/${name}")
    if(name STREQUAL "index.html")
        set(path "/")
    endif()
    file(READ "${file}" text)
    string(APPEND entries "    {\"${path}\", \"${type_${extension}}\", R\"~file~(${text})~file~\"},\n")
endforeach()
list(LENGTH files count)
file(WRITE "${SOURCE}" "#include \"apps/orbinel/backend/inspector_files.hpp\"\n\n"
                       "#include <array>\n\n"
                       "namespace orbinel::tool {\nnamespace {\n\n"
                       "constexpr std::array<InspectorFile, ${count}> files{{\n${entries}}};\n\n"
                       "}  // namespace\n\n"
                       "const InspectorFile* inspectorFile(std::string_view path) {\n"
                       "    for (const auto& file : files) {\n"
                       "        if (file.path == path) return &file;\n"
                       "    }\n"
                       "    return nullptr;\n"
                       "}\n\n"
                       "}  // namespace orbinel::tool\n")
