#pragma once

#include <QLocalServer>
#include <QObject>
#include <QStringList>

// One Aerolume per user: the first launch listens on a local socket; a later launch hands over its URL
// arguments and its activation token (so the raised window may take focus on Wayland) and exits.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    explicit SingleInstance(const QString &name = defaultName(), QObject *parent = nullptr);

    [[nodiscard]] static QString defaultName();

    // Becomes the first instance, or, when one runs, hands it the message and returns false.
    [[nodiscard]] bool claim(const QStringList &urls, const QString &activationToken);

signals:
    // A later launch asked to be shown: its URLs (maybe none) and activation token (maybe empty).
    void activated(const QStringList &urls, const QString &activationToken);

private:
    void onConnection();

    QString m_name;
    QLocalServer m_server;
};
