# Manual pages, and the files by which graphical programs find an engine.

# compressed(LIST SOURCE NAME): adds to LIST a file NAME.gz, which is SOURCE with the version filled
# in, compressed in the same way every time.
function(compressed list source name)
  set(plain ${CMAKE_CURRENT_BINARY_DIR}/install/${name})
  configure_file(${source} ${plain} @ONLY)
  add_custom_command(OUTPUT ${plain}.gz
    COMMAND gzip -9nkf ${plain} DEPENDS ${plain} VERBATIM)
  set(${list} ${${list}} ${plain}.gz PARENT_SCOPE)
endfunction()

compressed(manual_pages man/ombrin.6 ombrin.6)
compressed(manual_pages man/ombrin-bitbases.6 ombrin-bitbases.6)
add_custom_target(manual ALL DEPENDS ${manual_pages})
install(FILES ${manual_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man6)

# One file for each of the two protocols. Xboard reads them; the second line becomes an entry of its
# list of engines. Two that only name the program would look alike there, so one has a name of its own.
# Xboard takes a line with blanks for a command with arguments: that line has tabs, and the name a
# no-break space.
install(FILES packaging/uci/ombrin.eng DESTINATION ${CMAKE_INSTALL_DATADIR}/games/plugins/uci)
install(FILES packaging/xboard/ombrin.eng DESTINATION ${CMAKE_INSTALL_DATADIR}/games/plugins/xboard)
