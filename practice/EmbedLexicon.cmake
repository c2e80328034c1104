# Writes the JSON files NAMES (joined by commas) of FOLDER into the C++ source OUTPUT as raw strings.
string(REPLACE "," ";" names "${NAMES}")
file(WRITE "${OUTPUT}.new" "#include \"practice/EmbeddedLexicon.h\"\n\nnamespace nimbrelle::practice {\n\n"
    "std::string_view embeddedFile(std::string_view name)\n{\n")
foreach(name IN LISTS names)
    file(READ "${FOLDER}/${name}.json" content)
    file(APPEND "${OUTPUT}.new" "    if (name == \"${name}\")\n        return R\"lexicon(${content})lexicon\";\n")
endforeach()
file(APPEND "${OUTPUT}.new" "    return {};\n}\n\n} // namespace nimbrelle::practice\n")
file(RENAME "${OUTPUT}.new" "${OUTPUT}")
