# Writes a C++ source that holds the files of a list, each line of which reads name=path. A Markdown file
# is held as the HTML that cmark-gfm makes of it.
#
#   cmake -DLIST=... -DOUTPUT=... -DCMARK=... -P EmbedFiles.cmake
file(STRINGS ${LIST} entries)
set(source "#include \"Assets.h\"\n\nnamespace kcf {\n\nconst std::vector<Asset>& assets() {\n"
    "  static const std::vector<Asset> all = {\n")
string(CONCAT source ${source})
foreach(entry ${entries})
  string(FIND ${entry} "=" at)
  string(SUBSTRING ${entry} 0 ${at} name)
  math(EXPR at "${at} + 1")
  string(SUBSTRING ${entry} ${at} -1 path)
  if(path MATCHES "\\.md$")
    execute_process(COMMAND ${CMARK} --full-info-string -e table ${path}
      OUTPUT_VARIABLE content COMMAND_ERROR_IS_FATAL ANY)
  else()
    file(READ ${path} content)
  endif()
  string(APPEND source "      {\"${name}\", R\"asset(${content})asset\"},\n")
endforeach()
string(APPEND source "  };\n  return all;\n}\n\n}  // namespace kcf\n")
file(WRITE ${OUTPUT} "${source}")
