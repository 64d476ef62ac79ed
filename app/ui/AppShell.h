#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>
#include <functional>
#include <optional>

class DebugLog;
class DesktopNotifier;
class FlightStore;
class QJSEngine;
class QQmlEngine;
class SingleInstance;

// The application around its windows: which windows count as main windows, bringing one back whenever
// Aerolume is reached with none open (from a URL, a notification, a second launch, the tray), the
// last-resort window, the windows opened only once, the aerolume: URLs and their commands, and the debug
// log that tells all of it. One per QML engine; the application has one engine.
class AppShell : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString websiteUrl READ websiteUrl CONSTANT)
    Q_PROPERTY(QString releaseHistoryUrl READ releaseHistoryUrl CONSTANT)

public:
    using Clock = std::function<QDateTime()>;
    // Runs the task on the main loop after the delay.
    using Scheduler = std::function<void(int delayMs, std::function<void()> task)>;

    // Delays of the checks, in milliseconds.
    static constexpr int launchCheckMs = 1000;
    static constexpr int activationCheckMs = 350;
    static constexpr int reopenCheckMs = 500;
    static constexpr qint64 restoreThrottleMs = 1000;

    // What the shell depends on; tests give their own clock, timers, log and folders.
    struct Options
    {
        Clock now;                // the current time when empty
        Scheduler schedule;       // a single-shot timer when empty
        DebugLog *log = nullptr;  // DebugLog::shared() when null
        FlightStore *store = nullptr; // FlightStore::shared() when null, made on first need
        QUrl mainWindowUrl;       // Main.qml of the module when empty
        QUrl fallbackUrl;         // FallbackRoot.qml of the module when empty
        QString shotsDirectory;   // the runtime folder when empty
    };

    // The parts of an aerolume: URL that handle() looks at, taken from the text as written: QUrl
    // lower-cases scheme and host, and the commands are compared with their case.
    struct Target
    {
        QString scheme;
        QString host;
        QString lastPathComponent;
    };

    explicit AppShell(QQmlEngine *engine, QObject *parent = nullptr);
    AppShell(QQmlEngine *engine, Options options, QObject *parent = nullptr);
    ~AppShell() override;

    // The shell of an engine, made with the default options on first ask.
    [[nodiscard]] static AppShell *forEngine(QQmlEngine *engine);
    static AppShell *create(QQmlEngine *engine, QJSEngine *);

    // The visible or minimised top-level windows with a title bar that are not About, Help or
    // Settings, in the order of the application's window list.
    [[nodiscard]] static QList<QWindow *> mainWindows();
    [[nodiscard]] static bool isMainWindow(const QWindow *window);
    // One line per top-level window, under the tag.
    void logWindows(const QString &tag) const;
    void restoreMainWindow();

    // Launching has finished: from now on activations check for a window, and in a second one the
    // launch checks too.
    void finishLaunching();
    // The application was activated (a second launch, the tray icon).
    void becameActive();
    [[nodiscard]] bool finishedLaunching() const { return m_finishedLaunching; }

    // A URL as the desktop hands it over, logged and then handled when its scheme is "aerolume".
    void handleGetURL(const QString &text);
    void handle(const QString &text);
    [[nodiscard]] static std::optional<Target> parse(const QString &text);

    // A click on one of our notifications; hex and token may be empty.
    void notificationClicked(const QString &hex, const QString &activationToken);
    // The token lets the next window raised take the focus on Wayland.
    void setActivationToken(const QString &token) { m_activationToken = token; }

    // Second launches and notification clicks, wired to the handlers above.
    void attach(SingleInstance *instance);
    void attach(DesktopNotifier *notifier);

    // The action that opens a main window: captured when the first main window appears, replaceable.
    void setOpenMainWindow(std::function<void()> action) { m_openMainWindow = std::move(action); }
    [[nodiscard]] bool hasOpenMainWindow() const { return bool(m_openMainWindow); }
    [[nodiscard]] QQuickWindow *fallbackWindow() const;

    [[nodiscard]] QString shotsDirectory() const;
    // Writes atomically, and never through a symbolic link or onto anything but a plain file.
    static bool writeFileRefusingLinks(const QString &path, const QByteArray &data);

    [[nodiscard]] QString websiteUrl() const;
    [[nodiscard]] QString releaseHistoryUrl() const;

    // For the windows' menus.
    Q_INVOKABLE void mainWindowAppeared();
    Q_INVOKABLE QObject *newMainWindow();
    // Opens the window of that id ("logbook", "settings", "help", "about") once, and raises it after.
    Q_INVOKABLE bool openWindow(const QString &id);
    Q_INVOKABLE void quit();
    Q_INVOKABLE [[nodiscard]] static bool hasWindowSource(const QString &id);

signals:
    // For those who wait on the timed work.
    void fallbackWindowCreated();

private:
    void dbg(const QString &message) const;
    void activate();
    void raise(QWindow *window);
    void presentFallback();
    void shot();
    void widgetShots();
    void closeWindows();
    QObject *createWindow(const QUrl &url);
    [[nodiscard]] FlightStore *store();
    [[nodiscard]] QDateTime now() const;
    void schedule(int delayMs, std::function<void()> task);

    QQmlEngine *m_engine;
    Options m_options;
    bool m_finishedLaunching = false;
    std::optional<QDateTime> m_lastRestore;
    std::function<void()> m_openMainWindow;
    QPointer<QQuickWindow> m_fallbackWindow;
    QHash<QString, QPointer<QWindow>> m_singleWindows;
    QString m_activationToken;
};
