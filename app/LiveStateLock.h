#pragma once

#include <QLockFile>
#include <QString>

// One owner of the live state at a time: the application or `aerolume-cli watch`. A second owner would
// announce every alert twice and log every sighting twice, and a one-off change of home made beside a
// running owner would be neither seen nor kept by it.
class LiveStateLock
{
public:
    // The lock in the runtime folder, or at the given path.
    explicit LiveStateLock(const QString &path = defaultPath());

    [[nodiscard]] static QString defaultPath();

    // Takes the lock without waiting; false when another process holds it.
    [[nodiscard]] bool tryLock();
    void unlock();
    // "aerolume-cli (process 1234)", for the message to the user; empty when unknown.
    [[nodiscard]] QString holder() const;

private:
    QLockFile m_file;
};
