# cmake -DOBJDUMP=... -DOBJECTS=FILE -P: fails if one of the object files that FILE lists, a line each, has
# data that a program may write and that no line below gives a reason for. Layers that promise to
# keep nothing for the process cannot have any.
set(reasons
  # The large block that a thread gave up last: its own thread alone sees it.
  "^Sumara::Pages::.*::spare(IsGone)?$"
  # Which of the model's readers keep data. Tables keep none and make no such reader.
  "^Sumara::.*::keepers$")

file(STRINGS "${OBJECTS}" objects)
foreach(object IN LISTS objects)
  execute_process(COMMAND "${OBJDUMP}" -tC "${object}" OUTPUT_VARIABLE symbols
    COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE ";" "," symbols "${symbols}")
  string(REGEX MATCHALL "[^\n]* O? *\\.t?(data|bss)[^\n]*" symbols "${symbols}")
  foreach(symbol IN LISTS symbols)
    # Constants that hold addresses are written by the loader alone.
    if(symbol MATCHES "\\.data\\.rel\\.ro|DW\\.ref\\.| d +\\.")
      continue()
    endif()
    string(REGEX REPLACE "^.*\t[0-9a-f]+ (\\.hidden )?" "" name "${symbol}")
    # The lock and the wrapper of what is named.
    string(REGEX REPLACE "^(guard variable|TLS init function|TLS wrapper function) for " "" name "${name}")
    set(known OFF)
    foreach(reason IN LISTS reasons)
      if(name MATCHES "${reason}")
        set(known ON)
      endif()
    endforeach()
    if(NOT known AND NOT name STREQUAL "__tls_guard")
      message(SEND_ERROR "${object} has data that may be written: ${name}")
    endif()
  endforeach()
endforeach()
