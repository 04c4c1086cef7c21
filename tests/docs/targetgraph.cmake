# Fails unless the first Mermaid block of DOCUMENT is the content of GRAPH.
file(READ ${DOCUMENT} document)
file(READ ${GRAPH} graph)
string(FIND "${document}" "```mermaid\n${graph}```" place)
if(place EQUAL -1)
    message(FATAL_ERROR "${DOCUMENT} does not show the target graph of the build. Its Mermaid block must be:\n\n${graph}")
endif()
