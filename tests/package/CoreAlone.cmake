# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Makes find_package() fail for everything that Core has no use for.
foreach(package benchmark CLI11 CURL OpenSSL
        Qt6Gui Qt6HttpServer Qt6LinguistTools Qt6Network Qt6Sql Qt6Test Qt6WebSockets Qt6Widgets)
    set(CMAKE_DISABLE_FIND_PACKAGE_${package} TRUE)
endforeach()
