# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
# Makes of a header what Doxygen understands, line by line, so that its messages name the right lines.
# - It looks at what lies outside classes in files with a comment of their own only: the licence line becomes one.
# - It wants comments on functions that are deleted and on operators that compare member by member.
# - A setter or an overload right below a documented function shares that function's comment.
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
