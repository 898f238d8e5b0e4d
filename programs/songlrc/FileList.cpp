// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "FileList.h"

#include "programs/common/TextFile.h"

#include <QByteArray>

#include <algorithm>
#include <filesystem>
#include <set>

namespace fs = std::filesystem;

namespace {

bool isLyricName(const std::string &name)
{
    return QByteArray::fromStdString(name).toLower().endsWith(".lrc");
}

void addFolder(const fs::path &folder, std::vector<std::string> &files, const auto &onFailure)
{
    std::vector<fs::directory_entry> entries;
    std::error_code error;
    for (fs::directory_iterator next(folder, error); !error && next != fs::directory_iterator();
         next.increment(error))
        entries.push_back(*next);
    if (error)
        onFailure(folder, FileError(folder, error.message()));
    std::sort(entries.begin(), entries.end());
    for (const fs::directory_entry &entry : entries) {
        const std::string name = entry.path().filename();
        if (name.starts_with('.') || entry.is_symlink(error))
            continue;
        if (entry.is_directory(error))
            addFolder(entry.path(), files, onFailure);
        else if (isLyricName(name) && entry.is_regular_file(error))
            files.push_back(entry.path());
    }
}

} // namespace

std::vector<std::string>
lyricFiles(const std::vector<std::string> &names,
           const std::function<void(const std::string &folder, const std::exception &error)> &onFailure)
{
    std::vector<std::string> files;
    for (const std::string &name : names) {
        std::error_code error;
        if (name != StandardStream && fs::is_directory(name, error))
            addFolder(name, files, onFailure);
        else
            files.push_back(name);
    }
    std::set<std::string> known;
    std::erase_if(files, [&](const std::string &file) {
        std::error_code error;
        const fs::path path = file == StandardStream ? fs::path() : fs::canonical(file, error);
        return !known.insert(error || path.empty() ? file : path.string()).second;
    });
    return files;
}

ExitStatus forEachFile(const std::vector<std::string> &files, bool json,
                       const std::function<ExitStatus(const std::string &file)> &process)
{
    ExitStatus status = Done;
    Progress progress(files.size());
    for (const std::string &file : files) {
        progress.step();
        try {
            status = std::max(status, process(file));
        } catch (const StandardOutputError &) {
            throw;
        } catch (const std::exception &error) {
            status = Failed;
            reportFailure(error, json, file);
        }
    }
    return status;
}

ExitStatus forEachLyricFile(const Options &options,
                            const std::function<ExitStatus(const std::string &file)> &process)
{
    ExitStatus status = Done;
    const auto files = lyricFiles(options.files, [&](const std::string &folder, const std::exception &error) {
        status = Failed;
        reportFailure(error, options.json, folder);
    });
    return std::max(status, forEachFile(files, options.json, process));
}
