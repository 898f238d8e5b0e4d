// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/Distance.h>
#include <QVSongLrc/QVLrcUtils.h>
#include <QVSongLrc/QVLyricService.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QCoreApplication>

#include <memory>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QVLyricService::setEndpoint("localhost", 1); // where nobody listens

    std::optional<QVLyricError> answer;
    ZTLyricRequestModel::initWithReqParams({{"track", "Auld Lang Syne"}})
        ->requestWithCompletion([&](const std::optional<QVLyricError> &error, const QString &) {
            answer = error;
            QCoreApplication::quit();
        });
    QCoreApplication::exec();
    const bool isWhole = answer && answer->domain == QVLyricError::TransportDomain
        && !QVLrcUtils::generateLyricApiKey().isEmpty() && Distance::likePercent(u"same", u"same") == 100;
    return isWhole ? 0 : 1;
}
