# Writes SOURCE, a C++ file that holds the text of PAGE.
file(READ "${PAGE}" text)
file(WRITE "${SOURCE}" "#include \"apps/orbinel/backend/inspector_page.hpp\"\n\n"
                       "namespace orbinel::tool {\n\n"
                       "const char* inspectorPage() {\n    return R\"~page~(${text})~page~\";\n}\n\n"
                       "}  // namespace orbinel::tool\n")
