# Writes the word files NAMES (joined by commas) of FOLDER into the C++ source OUTPUT as raw strings.
string(REPLACE "," ";" names "${NAMES}")
file(WRITE "${OUTPUT}.new" "#include \"practice/EmbeddedLexicon.h\"\n\nnamespace nimbrelle::practice {\n\n")
foreach(name IN LISTS names)
    file(READ "${FOLDER}/${name}.json" content)
    file(APPEND "${OUTPUT}.new"
        "static constexpr std::string_view ${name} = R\"lexicon(${content})lexicon\";\n")
endforeach()
list(REMOVE_ITEM names sentences)
list(JOIN names ", " words)
file(APPEND "${OUTPUT}.new"
    "\nstd::vector<std::string_view> embeddedWordFiles() { return { ${words} }; }\n"
    "\nstd::string_view embeddedSentences() { return sentences; }\n\n} // namespace nimbrelle::practice\n")
file(RENAME "${OUTPUT}.new" "${OUTPUT}")
