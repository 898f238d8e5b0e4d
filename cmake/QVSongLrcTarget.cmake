# What every target of the project is built with; nothing of it reaches a program that uses the library.
function(qvsonglrc_target target)
    set_target_properties(${target} PROPERTIES
        CXX_STANDARD 20
        CXX_STANDARD_REQUIRED ON
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin
        LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion -Wshadow)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII
        QT_NO_CAST_TO_ASCII
        QT_NO_CAST_FROM_BYTEARRAY
        QT_NO_URL_CAST_FROM_STRING
        QT_NO_KEYWORDS
        QT_NO_FOREACH)
    # clang's sanitizers leave their symbols to the program
    if(NOT (CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND CMAKE_CXX_FLAGS MATCHES "-fsanitize"))
        target_link_options(${target} PRIVATE LINKER:--no-undefined)
    endif()
endfunction()

# What each of the libraries is, beside that.
function(qvsonglrc_library target)
    qvsonglrc_target(${target})
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/include)
    target_compile_features(${target} PUBLIC cxx_std_20)
endfunction()
