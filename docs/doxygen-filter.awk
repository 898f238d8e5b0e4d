# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Rewrites a header for Doxygen line by line, so that line numbers in its messages stay right.
# - Doxygen documents names outside classes only in files that have a comment: the first licence line becomes one.
# - Doxygen asks for comments on deleted functions and on defaulted operators: those lines are dropped.
# - A setter or an overload directly below a documented function gets that function's comment.
NR == 1 { print "/** \\file */"; next }
/= delete;$/ || /friend.* = default;$/ { print ""; name = ""; next }
/^ *\/\/\/ / { if (!inComment) comment = ""; inComment = 1; comment = comment " " substr($0, index($0, "///") + 4); print; next }
/^ *\/\/\/$/ { print; next }
/^ *$/ { name = ""; print; next }
{
    own = ""
    if (match($0, /[A-Za-z]+\(/))
        own = substr($0, RSTART, RLENGTH - 1)
    setter = "set" toupper(substr(name, 1, 1)) substr(name, 2)
    if (!inComment && name != "" && (own == name || own == setter)) {
        print "/** " comment " */ " $0
    } else {
        print
        if (inComment || own != "")
            name = inComment ? own : ""
    }
    inComment = 0
}
