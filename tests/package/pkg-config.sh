#!/bin/sh
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# usage: pkg-config.sh COMPILER PKG_CONFIG_FOLDER BUILD_FOLDER
# Builds a program for each library with the flags from pkg-config, and runs it.
set -eu
compiler=$1
export PKG_CONFIG_PATH="$2"
build=$3
mkdir -p "$build"
for library in Core Lookup Dialog; do
    program=$(echo "$library" | tr '[:upper:]' '[:lower:]')
    # shellcheck disable=SC2046 # a list of words
    "$compiler" -std=c++20 "$(dirname "$0")/consumer/$program.cpp" -o "$build/$program" \
        $(pkg-config --cflags --libs "QVSongLrc$library")
    LD_LIBRARY_PATH=$(pkg-config --variable=libdir "QVSongLrc$library") "$build/$program"
done
