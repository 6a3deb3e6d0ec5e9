# Sizes the example list in EXAMPLES with the program SIZE_VALVES and compares the answer with the one beside it. One of
# its tanks is refused, which the exit status says. Five summaries are left in DIR. The user's language is Turkish, where
# the small letter of I is another one.
file(REMOVE_RECURSE ${DIR})
file(MAKE_DIRECTORY ${DIR})
execute_process(COMMAND ${SIZE_VALVES} --quiet -o ${DIR}/answer.csv --summaries ${DIR}/summaries ${EXAMPLES}/tanks.csv
                RESULT_VARIABLE status ERROR_VARIABLE errors)
if(NOT status EQUAL 1 OR errors)
    message(FATAL_ERROR "exit status ${status}: ${errors}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${DIR}/answer.csv ${EXAMPLES}/tanks_sized.csv
                COMMAND_ERROR_IS_FATAL ANY)
file(GLOB summaries RELATIVE ${DIR}/summaries ${DIR}/summaries/*)
if(NOT summaries STREQUAL "TK-101 in.pdf;TK-101 out.pdf;TK-102 in.pdf;TK-102 out.pdf;TK-103 in.pdf")
    message(SEND_ERROR "summaries: ${summaries}")
endif()
foreach(summary IN LISTS summaries)
    file(READ "${DIR}/summaries/${summary}" beginning LIMIT 5)
    if(NOT beginning MATCHES "^%PDF-")
        message(SEND_ERROR "${summary} is no PDF")
    endif()
endforeach()

# A second run goes on: it writes what is missing, leaves what says the same, and answers alike.
file(REMOVE "${DIR}/summaries/TK-102 in.pdf")
execute_process(COMMAND ${SIZE_VALVES} --summaries ${DIR}/summaries ${EXAMPLES}/tanks.csv
                OUTPUT_FILE ${DIR}/again.csv ERROR_VARIABLE errors)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${DIR}/again.csv ${DIR}/answer.csv COMMAND_ERROR_IS_FATAL ANY)
if(NOT EXISTS "${DIR}/summaries/TK-102 in.pdf" OR NOT errors MATCHES "4 summaries were there and say the same")
    message(SEND_ERROR "the summaries are not gone on with: ${errors}")
endif()

# Rows that are not sized any more are told that their summaries stay.
file(WRITE ${DIR}/changed.csv "Tag Number,Pump Rate\nTK-101 in,x\nTK-102 in,0\nTK-104 in,x\n")
execute_process(COMMAND ${SIZE_VALVES} --summaries ${DIR}/summaries ${DIR}/changed.csv
                OUTPUT_VARIABLE answer ERROR_VARIABLE errors)
if(NOT answer MATCHES "TK-101 in.pdf is there and not of this run.*TK-102 in.pdf is there and not of this run" OR
   NOT errors MATCHES "\nsize_valves: 2 summaries of an earlier run stay beside rows that are not sized now, see Messages")
    message(SEND_ERROR "summaries of an earlier run: ${answer}${errors}")
endif()

# Through pipes, and in capitals, which come back as they came.
foreach(file tanks tanks_sized)
    file(READ ${EXAMPLES}/${file}.csv text)
    string(REPLACE "Metric" "METRIC" text "${text}")
    file(WRITE ${DIR}/${file}.csv "${text}")
endforeach()
execute_process(COMMAND ${CMAKE_COMMAND} -E cat ${DIR}/tanks.csv COMMAND ${SIZE_VALVES} --quiet -
                OUTPUT_FILE ${DIR}/piped.csv RESULT_VARIABLE status)
if(NOT status EQUAL 1)
    message(SEND_ERROR "exit status ${status} through pipes")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${DIR}/piped.csv ${DIR}/tanks_sized.csv
                COMMAND_ERROR_IS_FATAL ANY)

# Of a list with a misspelt column nothing is done.
file(WRITE ${DIR}/misspelt.csv "Gas,Pumprate\nAir,1\n")
execute_process(COMMAND ${SIZE_VALVES} -o ${DIR}/none.csv ${DIR}/misspelt.csv RESULT_VARIABLE status ERROR_VARIABLE errors)
if(NOT status EQUAL 2 OR EXISTS ${DIR}/none.csv OR NOT errors MATCHES "misspelt.csv:1: column 2, \"Pumprate\": it resembles")
    message(SEND_ERROR "exit status ${status}: ${errors}")
endif()

# What was taken for granted, and the columns of the user's own, are told at the end.
file(WRITE ${DIR}/defaults.csv "Pump Rate,Site\n1,a\n2,b\n")
execute_process(COMMAND ${SIZE_VALVES} ${DIR}/defaults.csv OUTPUT_QUIET ERROR_VARIABLE errors)
if(NOT errors MATCHES "size_valves: no column Units of Measure: US taken for 2 rows\n.*copied unchanged, for the program does not use them: \"Site\"\n")
    message(SEND_ERROR "told at the end: ${errors}")
endif()

# What the system does not take or give is told with its reason: a closed stream, a full disk.
foreach(case "$0 - <&- = standard input: Bad file descriptor"
             "$0 ${DIR}/tanks.csv <&- >&- = standard output: Bad file descriptor"
             "$0 ${DIR}/tanks.csv >/dev/full = standard output: No space left on device"
             "$0 --help >/dev/full = standard output: No space left on device")
    string(REGEX MATCH "(.*) = (.*)" matched "${case}")
    execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C sh -c "${CMAKE_MATCH_1}" ${SIZE_VALVES}
                    RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE errors)
    if(NOT status EQUAL 2 OR NOT errors STREQUAL "size_valves: ${CMAKE_MATCH_2}\n")
        message(SEND_ERROR "${CMAKE_MATCH_1}: exit status ${status}: ${errors}")
    endif()
endforeach()
