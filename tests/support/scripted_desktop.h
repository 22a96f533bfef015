#pragma once

#include "platform/desktop/desktop.h"

#include <QtCore/QDebug>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

#include <deque>
#include <functional>

namespace corvane::test {

/// A desktop that answers from queues and remembers what it was asked. A question, or a file dialog, for
/// which no answer is queued is refused with a warning, which fails the test.
class ScriptedDesktop : public Desktop
{
public:
    struct Message {
        QString text;
        int flags = 0;
        QString title;

        bool operator==(const Message &) const = default;
    };

    std::deque<MessageAnswer> answers; ///< to questions; a box with one button needs none
    std::deque<QString> files;         ///< of file dialogs; empty: cancelled
    /// What the user sets in print dialogs; false: cancelled.
    std::deque<std::function<bool(QPrinter &)>> printDialogs;
    int openCode = OpenCodes::Started;
    bool hasBrowser = true;

    QList<Message> messages;
    QList<SaveFileRequest> saveRequests;
    QStringList openFolders; ///< initial folders of open dialogs
    QStringList openedDocuments;
    QList<QUrl> openedAddresses;
    QList<int> printPageCounts; ///< as print dialogs were told them

    MessageAnswer message(const QString &text, int flags, const QString &title) override
    {
        messages.append({text, flags, title});
        return !MessageFlags::ask(flags) ? MessageAnswer::Ok : next(answers, MessageAnswer::No);
    }

    QString openFile(const QString &, const QString &initialFolder, const QString &) override
    {
        openFolders += initialFolder;
        return next(files, QString());
    }

    QString saveFile(const SaveFileRequest &request) override
    {
        saveRequests += request;
        return next(files, QString());
    }

    bool printDialog(QPrinter &printer, int pageCount) override
    {
        printPageCounts += pageCount;
        return next(printDialogs, std::function<bool(QPrinter &)>([](QPrinter &) { return false; }))(printer);
    }

    int openDocument(const QString &path) override
    {
        openedDocuments += path;
        return openCode;
    }

    bool openAddress(const QUrl &address) override
    {
        openedAddresses += address;
        return hasBrowser;
    }

private:
    template<typename T>
    static T next(std::deque<T> &queue, T none)
    {
        if (queue.empty()) {
            qWarning("The desktop was asked for more than the test announced.");
            return none;
        }
        T answer = std::move(queue.front());
        queue.pop_front();
        return answer;
    }
};

} // namespace corvane::test
