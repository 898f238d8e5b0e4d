// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// The main function of a fuzz target without libFuzzer: runs it on every file of the directories in its
// arguments, and on random texts, which are the same in every run.

#include "FuzzText.h"

#include <QDebug>
#include <QRandomGenerator>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

void run(const void *data, std::size_t size)
{
    const auto *bytes = static_cast<const std::uint8_t *>(data);
    try {
        LLVMFuzzerTestOneInput(bytes, size);
    } catch (const std::exception &failure) {
        qCritical() << failure.what() << "does not hold for" << fuzzText(bytes, size);
        std::exit(1);
    }
}

// Texts of up to 24 pieces, some of up to 99, chosen so that tags and almost-tags are frequent.
void runRandomTexts()
{
    const QString pieces[] = {
        u"["_s,        u"["_s,          u"["_s,          u"]"_s,          u"]"_s,           u"]"_s,
        u":"_s,        u":"_s,          u":"_s,          u"."_s,          u"."_s,           u"0"_s,
        u"1"_s,        u"23"_s,         u"9"_s,          u"\u0660"_s,     u"\u096f"_s,      u"\uff10"_s,
        u"\u00b2"_s,   u"\U000104a0"_s, u"\U0001d7ff"_s, u"\U0001f3b5"_s, u"/"_s,           u"a"_s,
        u"z"_s,        u"ar"_s,         u"A"_s,          u"`"_s,          u"{"_s,           u"\u00e9"_s,
        u"\r"_s,       u"\n"_s,         u"\r\n"_s,       u" "_s,          u"\t"_s,          u"\b"_s,
        u"\v"_s,       u"\x0e"_s,       u"\x1c"_s,       u"\u0085"_s,     u"\u00a0"_s,      u"\u2028"_s,
        u"\u3000"_s,   u"\u200b"_s,     u"\u180e"_s,     u"\ufeff"_s,     u"\xd835"_s,      u"\xdfce"_s,
        u"\0"_s,       u"[01:"_s,       u"[ar:"_s,       u"[00:12.34]"_s, u"2.3]"_s,        u"<"_s,
        u">"_s,        u","_s,          u"-"_s,          u"[12:34"_s,     u"[00:12.345]"_s, u"[01:02:03"_s,
        u"[offset:"_s, u"\uff3b1:"_s,   u"[00:12.34]"_s, u"[59:02.03]"_s, u"[00:70.00]"_s};
    QRandomGenerator random(20261122);
    for (int i = 0; i < 100'000; ++i) {
        QString text;
        for (quint32 n = random.bounded(i % 10 == 0 ? 100u : 25u); n > 0; --n)
            text += pieces[random.bounded(quint32(std::size(pieces)))];
        run(text.utf16(), std::size_t(text.size()) * sizeof(char16_t));
    }
}

} // namespace

int main(int argc, char **argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto &entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator(file), {}};
            run(bytes.data(), bytes.size());
            ++count;
        }
    }
    runRandomTexts();
    std::printf("%d inputs replayed\n", count);
    return count > 0 ? 0 : 1;
}
