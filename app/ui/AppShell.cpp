#include "AppShell.h"

#include "AppLinks.h"
#include "DebugLog.h"
#include "DesktopNotifier.h"
#include "FaceCatalog.h"
#include "FaceRenderer.h"
#include "FlightStore.h"
#include "SingleInstance.h"
#include "UserDirectories.h"
#include "WidgetFaces.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSaveFile>
#include <QScreen>
#include <QTimer>
#include <sys/stat.h>

namespace {

const QString moduleRoot = u"qrc:/qt/qml/Aerolume/App/"_qs;

// The windows that are opened once, by id, and the files they are made from.
const QHash<QString, QString> &singleWindowFiles()
{
    static const QHash<QString, QString> files{
        {u"logbook"_qs, u"LogbookWindow.qml"_qs},
        {u"settings"_qs, u"SettingsWindow.qml"_qs},
        {u"help"_qs, u"HelpWindow.qml"_qs},
        {u"about"_qs, u"AboutWindow.qml"_qs},
    };
    return files;
}

QHash<QQmlEngine *, AppShell *> &shells()
{
    static QHash<QQmlEngine *, AppShell *> registry;
    return registry;
}

// "Main_QMLTYPE_3" for a window declared in Main.qml: the name without what QML adds to it.
QString bareClassName(const QObject *object)
{
    QString name = QString::fromLatin1(object->metaObject()->className());
    static const QRegularExpression qmlSuffix(u"_QML(TYPE)?_\\d+$"_qs);
    name.remove(qmlSuffix);
    const qsizetype scope = name.lastIndexOf(u"::"_qs);
    return scope >= 0 ? name.mid(scope + 2) : name;
}

QString yesNo(bool value)
{
    return value ? u"true"_qs : u"false"_qs;
}

bool isMinimised(const QWindow *window)
{
    return window->windowStates().testFlag(Qt::WindowMinimized);
}

} // namespace

AppShell::AppShell(QQmlEngine *engine, QObject *parent) : AppShell(engine, Options(), parent) {}

AppShell::AppShell(QQmlEngine *engine, Options options, QObject *parent)
    : QObject(parent), m_engine(engine), m_options(std::move(options))
{
    if (m_options.mainWindowUrl.isEmpty())
        m_options.mainWindowUrl = QUrl(moduleRoot + u"Main.qml"_qs);
    if (m_options.fallbackUrl.isEmpty())
        m_options.fallbackUrl = QUrl(moduleRoot + u"FallbackRoot.qml"_qs);
    shells().insert(engine, this);
}

AppShell::~AppShell()
{
    if (shells().value(m_engine) == this)
        shells().remove(m_engine);
    // The windows made here go with a shell that its owner ends. A shell the engine made ends inside the
    // engine's destruction, too late to take down what the engine's components made; the process ends.
    if (parent() == m_engine)
        return;
    for (const QPointer<QWindow> &window : std::as_const(m_singleWindows))
        delete window.data();
    delete m_fallbackWindow.data();
}

AppShell *AppShell::forEngine(QQmlEngine *engine)
{
    if (AppShell *shell = shells().value(engine))
        return shell;
    return new AppShell(engine, engine);
}

AppShell *AppShell::create(QQmlEngine *engine, QJSEngine *)
{
    AppShell *shell = forEngine(engine);
    QQmlEngine::setObjectOwnership(shell, QQmlEngine::CppOwnership);
    return shell;
}

void AppShell::dbg(const QString &message) const
{
    (m_options.log ? m_options.log : DebugLog::shared())->write(message);
}

QDateTime AppShell::now() const
{
    return m_options.now ? m_options.now() : QDateTime::currentDateTimeUtc();
}

void AppShell::schedule(int delayMs, std::function<void()> task)
{
    if (m_options.schedule)
        m_options.schedule(delayMs, std::move(task));
    else
        QTimer::singleShot(delayMs, this, std::move(task));
}

FlightStore *AppShell::store()
{
    return m_options.store ? m_options.store : FlightStore::shared();
}

bool AppShell::isMainWindow(const QWindow *window)
{
    const Qt::WindowFlags flags = window->flags();
    const Qt::WindowType type = window->type();
    // A title bar: an ordinary window or dialog the desktop frames.
    const bool titled = (type == Qt::Window || type == Qt::Dialog) && !flags.testFlag(Qt::FramelessWindowHint);
    if (!titled || !(window->isVisible() || isMinimised(window)))
        return false;
    const QString title = window->title();
    return title != u"About Aerolume"_qs && title != u"Aerolume Help"_qs && !title.startsWith(u"Settings"_qs);
}

QList<QWindow *> AppShell::mainWindows()
{
    QList<QWindow *> windows;
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        if (isMainWindow(window))
            windows.append(window);
    }
    return windows;
}

void AppShell::logWindows(const QString &tag) const
{
    QStringList lines{u"windows "_qs + tag + u':'};
    QStringList entries;
    for (const QWindow *window : QGuiApplication::topLevelWindows()) {
        entries.append(u"  ["_qs + tag + u"] '"_qs + window->title() + u"' id="_qs
                       + (window->objectName().isEmpty() ? u"-"_qs : window->objectName()) + u" class="_qs
                       + bareClassName(window) + u" visible="_qs + yesNo(window->isVisible()) + u" mini="_qs
                       + yesNo(isMinimised(window)));
    }
    dbg(lines.first() + u'\n' + entries.join(u'\n'));
}

void AppShell::raise(QWindow *window)
{
    if (isMinimised(window))
        window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->requestActivate();
}

void AppShell::activate()
{
    // Qt hands the token to the compositor with the next window that asks to be activated.
    if (!m_activationToken.isEmpty()) {
        qputenv("XDG_ACTIVATION_TOKEN", m_activationToken.toUtf8());
        m_activationToken.clear();
    }
}

void AppShell::restoreMainWindow()
{
    const QList<QWindow *> windows = mainWindows();
    if (!windows.isEmpty()) {
        QWindow *window = windows.first();
        dbg(u"raising existing window '"_qs + window->title() + u'\'');
        raise(window);
        return;
    }
    const QDateTime current = now();
    if (m_lastRestore && m_lastRestore->msecsTo(current) <= restoreThrottleMs) {
        dbg(u"restore throttled (already in progress)"_qs);
        return;
    }
    m_lastRestore = current;
    if (!m_openMainWindow) {
        dbg(u"no main window and no captured openWindow action"_qs);
    } else {
        dbg(u"no main window — calling captured openWindow(id: main)"_qs);
        m_openMainWindow();
        activate();
    }
    schedule(reopenCheckMs, [this] {
        logWindows(u"post-reopen"_qs);
        if (!mainWindows().isEmpty())
            return;
        dbg(u"openWindow produced nothing — using fallback window"_qs);
        presentFallback();
    });
}

void AppShell::presentFallback()
{
    if (m_fallbackWindow) {
        raise(m_fallbackWindow);
        return;
    }
    auto *window = qobject_cast<QQuickWindow *>(createWindow(m_options.fallbackUrl));
    if (!window)
        return;
    window->setTitle(u"Aerolume"_qs);
    window->resize(1180, 740);
    if (const QScreen *screen = window->screen()) {
        QRect frame(QPoint(), window->size());
        frame.moveCenter(screen->availableGeometry().center());
        window->setPosition(frame.topLeft());
    }
    m_fallbackWindow = window;
    raise(window);
    emit fallbackWindowCreated();
}

QQuickWindow *AppShell::fallbackWindow() const
{
    return m_fallbackWindow;
}

QObject *AppShell::createWindow(const QUrl &url)
{
    QQmlComponent component(m_engine, url);
    QObject *object = component.create();
    if (!object) {
        qWarning().noquote() << "Aerolume: cannot make the window" << url.toString() << component.errorString();
        return nullptr;
    }
    QQmlEngine::setObjectOwnership(object, QQmlEngine::CppOwnership);
    return object;
}

void AppShell::finishLaunching()
{
    m_finishedLaunching = true;
    dbg(u"launched; GetURL handler registered"_qs);
    schedule(launchCheckMs, [this] {
        if (!mainWindows().isEmpty())
            return;
        dbg(u"launched windowless — presenting a window"_qs);
        restoreMainWindow();
    });
}

void AppShell::becameActive()
{
    if (!m_finishedLaunching)
        return;
    schedule(activationCheckMs, [this] {
        if (!mainWindows().isEmpty())
            return;
        dbg(u"became active with no window — restoring"_qs);
        restoreMainWindow();
    });
}

std::optional<AppShell::Target> AppShell::parse(const QString &text)
{
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty())
        return std::nullopt;
    Target target;
    const qsizetype colon = text.indexOf(u':');
    target.scheme = text.left(colon);
    // The host as written: what follows "//" up to the path, the query or the fragment, without the
    // user and the port.
    if (text.mid(colon + 1, 2) == u"//"_qs) {
        QString authority = text.mid(colon + 3);
        const qsizetype end = authority.indexOf(QRegularExpression(u"[/?#]"_qs));
        if (end >= 0)
            authority.truncate(end);
        const qsizetype at = authority.lastIndexOf(u'@');
        if (at >= 0)
            authority.remove(0, at + 1);
        if (!authority.startsWith(u'[')) {
            const qsizetype port = authority.indexOf(u':');
            if (port >= 0)
                authority.truncate(port);
        }
        target.host = QUrl::fromPercentEncoding(authority.toUtf8());
    }
    // The last component of the path, a trailing slash aside; a path of slashes only gives "/".
    QString path = url.path(QUrl::FullyDecoded);
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    target.lastPathComponent = path == u"/"_qs ? path : path.mid(path.lastIndexOf(u'/') + 1);
    return target;
}

void AppShell::handleGetURL(const QString &text)
{
    dbg(u"GetURL: "_qs + text);
    const std::optional<Target> target = parse(text);
    if (!target || target->scheme != u"aerolume"_qs)
        return;
    handle(text);
}

void AppShell::handle(const QString &text)
{
    const Target target = parse(text).value_or(Target{});
    logWindows(u"before"_qs);
    activate();
    if (target.host == u"shot"_qs) {
        shot();
        return;
    }
    if (target.host == u"widgetshots"_qs) {
        widgetShots();
        return;
    }
    if (target.host == u"closewindow"_qs) {
        closeWindows();
        return;
    }
    restoreMainWindow();
    if (target.host == u"aircraft"_qs) {
        const QString hex = target.lastPathComponent;
        if (hex.isEmpty() || hex == u"/"_qs)
            return;
        // As written: a hex the list doesn't have selects nothing, and the next refresh clears it.
        store()->setSelectedHex(hex);
    }
}

void AppShell::notificationClicked(const QString &hex, const QString &activationToken)
{
    schedule(0, [this, hex, activationToken] {
        if (!activationToken.isEmpty())
            m_activationToken = activationToken;
        activate();
        restoreMainWindow();
        if (!hex.isEmpty())
            store()->setSelectedHex(hex);
    });
}

void AppShell::attach(SingleInstance *instance)
{
    connect(instance, &SingleInstance::activated, this, [this](const QStringList &urls, const QString &token) {
        if (!token.isEmpty())
            m_activationToken = token;
        becameActive();
        for (const QString &url : urls)
            handleGetURL(url);
    });
}

void AppShell::attach(DesktopNotifier *notifier)
{
    connect(notifier, &DesktopNotifier::notificationClicked, this, &AppShell::notificationClicked);
}

QString AppShell::shotsDirectory() const
{
    return m_options.shotsDirectory.isEmpty() ? UserDirectories::runtime() : m_options.shotsDirectory;
}

bool AppShell::writeFileRefusingLinks(const QString &path, const QByteArray &data)
{
    // QSaveFile would write to the target of a link found at the path; whatever is there must be a plain
    // file of its own or nothing.
    struct stat status {};
    if (::lstat(QFile::encodeName(path).constData(), &status) == 0 && !S_ISREG(status.st_mode))
        return false;
    QSaveFile file(path);
    file.setDirectWriteFallback(false);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(data);
    return file.commit();
}

void AppShell::shot()
{
    const QList<QWindow *> windows = mainWindows();
    if (windows.isEmpty())
        return;
    auto *window = qobject_cast<QQuickWindow *>(windows.first());
    const QImage image = window ? window->grabWindow() : QImage();
    if (image.isNull()) {
        dbg(u"grabWindow returned nothing"_qs);
        return;
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG") || png.isEmpty())
        return;
    const QString directory = shotsDirectory();
    QDir().mkpath(directory);
    writeFileRefusingLinks(QDir(directory).filePath(u"aerolume-shot.png"_qs), png);
    dbg(u"wrote shot via grabWindow %1x%2"_qs.arg(image.width()).arg(image.height()));
}

void AppShell::widgetShots()
{
    const SkyEntry entry = WidgetFaces().sampleEntry(u"#73FF99"_qs);
    const QString directory = shotsDirectory();
    QDir().mkpath(directory);
    FaceRenderer renderer(m_engine);
    const QList<std::pair<FaceCatalog::Face, QString>> faces{
        {FaceCatalog::Face::Nearest, u"widget-small.png"_qs},
        {FaceCatalog::Face::RadarMedium, u"widget-medium.png"_qs},
        {FaceCatalog::Face::Board, u"widget-large.png"_qs},
    };
    for (const auto &[face, name] : faces) {
        const QImage image = renderer.render(face, entry);
        if (image.isNull())
            continue;
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        if (!image.save(&buffer, "PNG") || png.isEmpty())
            continue;
        writeFileRefusingLinks(QDir(directory).filePath(name), png);
        dbg(u"wrote "_qs + name);
    }
}

void AppShell::closeWindows()
{
    for (QWindow *window : mainWindows())
        window->close();
    logWindows(u"after closewindow"_qs);
}

QString AppShell::websiteUrl() const
{
    return AppLinks::website();
}

QString AppShell::releaseHistoryUrl() const
{
    return AppLinks::releaseHistory();
}

void AppShell::mainWindowAppeared()
{
    if (!m_openMainWindow)
        m_openMainWindow = [this] { newMainWindow(); };
}

QObject *AppShell::newMainWindow()
{
    QObject *object = createWindow(m_options.mainWindowUrl);
    auto *window = qobject_cast<QQuickWindow *>(object);
    if (!window) {
        delete object;
        return nullptr;
    }
    // A further main window is not kept once closed: the next one is made anew.
    connect(window, &QWindow::visibleChanged, window, [window](bool visible) {
        if (!visible)
            window->deleteLater();
    });
    window->show();
    window->raise();
    window->requestActivate();
    return window;
}

bool AppShell::hasWindowSource(const QString &id)
{
    const QString file = singleWindowFiles().value(id);
    return !file.isEmpty() && QFile::exists(u":/qt/qml/Aerolume/App/"_qs + file);
}

bool AppShell::openWindow(const QString &id)
{
    QPointer<QWindow> &window = m_singleWindows[id];
    if (!window) {
        if (!hasWindowSource(id))
            return false;
        window = qobject_cast<QWindow *>(createWindow(QUrl(moduleRoot + singleWindowFiles().value(id))));
        if (!window)
            return false;
    }
    raise(window);
    return true;
}

void AppShell::quit()
{
    QCoreApplication::quit();
}
