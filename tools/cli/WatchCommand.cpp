#include "WatchCommand.h"

#include "FlightStore.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <QTime>

QString WatchCommand::usage()
{
    return u"usage: aerolume-cli watch [--count N] [--json]"_qs;
}

std::optional<WatchCommand::Options> WatchCommand::parse(const QStringList &arguments, QString *error)
{
    Options options;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == u"--json") {
            options.json = true;
        } else if (arguments[i] == u"--count") {
            bool ok = false;
            const int count = arguments.value(i + 1).toInt(&ok);
            if (!ok || count < 1) {
                *error = u"--count needs a whole number above 0"_qs;
                return std::nullopt;
            }
            options.count = count;
            ++i;
        } else {
            *error = u"unknown argument: %1"_qs.arg(arguments[i]);
            return std::nullopt;
        }
    }
    return options;
}

WatchCommand::WatchCommand(Options options, FlightStore *store, QObject *parent)
    : QObject(parent), m_options(options)
{
    connect(store, &FlightStore::refreshApplied, this,
            [this, store](const QString &source) { print(appliedLine(*store, source, m_options.json)); });
    connect(store, &FlightStore::refreshFailed, this,
            [this](const QString &message) { print(failedLine(message, m_options.json)); });
}

QString WatchCommand::appliedLine(const FlightStore &store, const QString &source, bool json)
{
    const QList<Aircraft> &aircraft = store.aircraft();
    if (json) {
        const QJsonObject line{{u"event"_qs, u"applied"_qs},
                               {u"source"_qs, source},
                               {u"count"_qs, int(aircraft.size())},
                               {u"nearest"_qs, aircraft.isEmpty() ? QJsonValue(QJsonValue::Null)
                                                                  : QJsonValue(aircraft.constFirst().hex())}};
        return QString::fromUtf8(QJsonDocument(line).toJson(QJsonDocument::Compact));
    }
    QString text = u"%1  %2 aircraft from %3"_qs.arg(QTime::currentTime().toString(u"HH:mm:ss"))
                       .arg(aircraft.size())
                       .arg(source);
    if (!aircraft.isEmpty()) {
        const Aircraft &nearest = aircraft.constFirst();
        text += u", nearest %1"_qs.arg(nearest.displayName());
        if (const auto distance = nearest.distanceText(u"nm"_qs, false))
            text += u" at "_qs + *distance;
    }
    return text;
}

QString WatchCommand::failedLine(const QString &message, bool json)
{
    if (json) {
        const QJsonObject line{{u"event"_qs, u"error"_qs}, {u"lastError"_qs, message}};
        return QString::fromUtf8(QJsonDocument(line).toJson(QJsonDocument::Compact));
    }
    return u"%1  error: %2"_qs.arg(QTime::currentTime().toString(u"HH:mm:ss"), message);
}

void WatchCommand::print(const QString &line)
{
    if (m_options.count && m_printed >= *m_options.count)
        return;
    QTextStream out(stdout);
    out << line << '\n';
    out.flush();
    ++m_printed;
    if (m_options.count && m_printed >= *m_options.count)
        emit finished(0);
}
