#include "AlertEngine.h"
#include "ColorBinding.h"
#include "DefaultsStore.h"
#include "DesktopNotifier.h"
#include "FeedDecoder.h"
#include "FlightStore.h"
#include "LoopbackHttpServer.h"
#include "SharedState.h"
#include "SymbolImageProvider.h"
#include "TileSources.h"

#include "ItemTexts.h"
#include <QAccessible>
#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Aerolume_MapPlugin)

namespace {

// What a screen reader finds in a window: each element with its role, name and state.
struct Element
{
    QAccessible::Role role;
    QString name;
    QAccessible::State state;
    QObject *object;
};

void collect(QAccessibleInterface *interface, QList<Element> &elements, int depth = 0)
{
    if (!interface || depth > 64)
        return;
    elements.append({interface->role(), interface->text(QAccessible::Name), interface->state(), interface->object()});
    for (int i = 0; i < interface->childCount(); ++i)
        collect(interface->child(i), elements, depth + 1);
}

const QByteArray traffic =
    R"({"ac":[{"hex":"a1b2c3","flight":"ASA512  ","t":"B739","alt_baro":12500,"track":90,"lat":47.7,"lon":-122.3,"dst":4.2,"dir":10}]})";

// The keys "Reset to Defaults" leaves alone, with values unlike their defaults.
const QList<QPair<QString, QVariant>> keysResetLeavesAlone = {
    {u"appearanceChoice"_qs, u"dark"_qs},   {u"distanceUnit"_qs, u"km"_qs},
    {u"textScale"_qs, 1.25},                {u"reduceMotion"_qs, true},
    {u"increaseContrast"_qs, true},         {u"differentiateWithoutColor"_qs, true},
    {u"alertsEnabled"_qs, true},            {u"alertEmergency"_qs, false},
    {u"alertFlyover"_qs, true},             {u"alertMilitary"_qs, true},
    {u"alertHelicopters"_qs, true},         {u"alertLowAltitude"_qs, true},
    {u"alertWatchlist"_qs, u"N516AS"_qs},   {u"alertRangeMiles"_qs, 10.0},
    {u"flyoverMissMiles"_qs, 2.0},          {u"radiusNM"_qs, 40.0},
};

} // namespace

// The Settings window as a person and a screen reader meet it, opened from the main window with its
// keyboard shortcut, on the real settings file, widgets' file and autostart folder in temporary folders.
class SettingsViewTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    LoopbackHttpServer m_server;
    QQmlApplicationEngine *m_engine = nullptr;
    QString m_pictures;

    static DefaultsStore *defaults() { return DefaultsStore::shared(); }

    QQuickWindow *mainWindow() const { return qobject_cast<QQuickWindow *>(m_engine->rootObjects().value(0)); }

    static QList<QQuickWindow *> settingsWindows()
    {
        QList<QQuickWindow *> found;
        for (QWindow *window : QGuiApplication::topLevelWindows()) {
            if (window->objectName() == u"settingsWindow"_qs)
                found.append(qobject_cast<QQuickWindow *>(window));
        }
        return found;
    }
    static QQuickWindow *settings() { return settingsWindows().value(0); }
    static QQuickItem *view() { return item(u"settingsView"_qs); }
    // By the item tree, where a Repeater's rows live too.
    static QQuickItem *item(const QString &name) { return findItem(settings()->contentItem(), name); }
    static QQuickItem *findItem(QQuickItem *root, const QString &name)
    {
        if (!root)
            return nullptr;
        if (root->objectName() == name)
            return root;
        for (QQuickItem *child : root->childItems()) {
            if (QQuickItem *found = findItem(child, name))
                return found;
        }
        return nullptr;
    }

    static void showPane(const QString &pane)
    {
        view()->setProperty("pane", pane);
        QCoreApplication::processEvents();
    }

    static QList<Element> elements()
    {
        QList<Element> found;
        collect(QAccessible::queryAccessibleInterface(settings()), found);
        return found;
    }

    static std::optional<Element> element(const QString &name, std::optional<QAccessible::Role> role = std::nullopt)
    {
        for (const Element &e : elements()) {
            if (e.name == name && (!role || e.role == *role))
                return e;
        }
        return std::nullopt;
    }

    // What a screen reader's press does.
    static void press(const QString &name, std::optional<QAccessible::Role> role = std::nullopt)
    {
        const auto found = element(name, role);
        QVERIFY2(found, qPrintable(u"no element named "_qs + name));
        QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(found->object);
        QVERIFY(interface && interface->actionInterface());
        interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCoreApplication::processEvents();
    }

    // The segments of the picker of that name that a screen reader hears as chosen.
    static QStringList checkedSegments(const QString &pickerObjectName)
    {
        QStringList checked;
        QQuickItem *picker = item(pickerObjectName);
        if (!picker)
            return {u"<no picker>"_qs};
        QList<Element> all;
        collect(QAccessible::queryAccessibleInterface(picker), all);
        for (const Element &e : all) {
            if (e.role == QAccessible::RadioButton && e.state.checked)
                checked.append(e.name);
        }
        return checked;
    }

    static QStringList texts(QQuickWindow *window)
    {
        QStringList found;
        ItemTexts::collect(window->contentItem(), found);
        return found;
    }

    void save(const QString &name)
    {
        QQuickWindow *window = settings();
        QVERIFY(window);
        const QImage image = window->grabWindow();
        QVERIFY(!image.isNull());
        QCOMPARE(image.size() / window->devicePixelRatio(), QSize(760, 560));
        QVERIFY(image.save(m_pictures + u'/' + name));
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME"})
            qputenv(variable, m_dir.filePath(QString::fromLatin1(variable)).toUtf8());
        qputenv("AEROLUME_PRIMARY_FEED_URL", m_server.baseUrl().toUtf8());
        qputenv("AEROLUME_FALLBACK_FEED_URL", m_server.baseUrl().toUtf8());
        qputenv("AEROLUME_PHOTO_URL", m_server.baseUrl().toUtf8());
        qputenv("AEROLUME_ROUTE_URL", m_server.baseUrl().toUtf8());
        for (const char *variable : {"AEROLUME_TILE_URL_STANDARD", "AEROLUME_TILE_URL_IMAGERY", "AEROLUME_TILE_URL_LABELS"})
            qputenv(variable, (m_server.baseUrl() + u"/tiles/{z}/{x}/{y}.png"_qs).toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        m_server.route("/v2/point/", [](const LoopbackHttpServer::Request &) {
            return LoopbackHttpServer::Response{200, traffic, "application/json", false, false};
        });
        m_pictures = QDir::currentPath() + u"/pictures"_qs;
        QDir().mkpath(m_pictures);

        // As when a screen reader runs: controls then tell their roles.
        QAccessible::setActive(true);
        QQuickStyle::setStyle(u"Fusion"_qs);
        m_engine = new QQmlApplicationEngine(this);
        m_engine->addImportPath(u"qrc:/qt/qml"_qs);
        m_engine->addImageProvider(u"symbol"_qs, new SymbolImageProvider());
        m_engine->load(QUrl(u"qrc:/qt/qml/Aerolume/App/Main.qml"_qs));
        QVERIFY(mainWindow());
        mainWindow()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(mainWindow()));
    }

    void init() { QTest::failOnWarning(QRegularExpression(u"qrc:/"_qs)); }

    void ctrlCommaOpensOneWindow()
    {
        QTest::keyClick(mainWindow(), Qt::Key_Comma, Qt::ControlModifier);
        QTRY_COMPARE(settingsWindows().size(), 1);
        QTRY_VERIFY(settings()->isVisible());
        QCOMPARE(settings()->title(), u"Settings — General"_qs);
        QCOMPARE(settings()->size(), QSize(760, 560));
        QCOMPARE(settings()->minimumSize(), settings()->maximumSize());

        // A second time raises the same window.
        QWindow *first = settings();
        mainWindow()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(mainWindow()));
        QTest::keyClick(mainWindow(), Qt::Key_Comma, Qt::ControlModifier);
        QTRY_COMPARE(QGuiApplication::focusWindow(), first);
        QCOMPARE(settingsWindows().size(), 1);
        QVERIFY(QTest::qWaitForWindowExposed(settings()));
    }

    void sidebarChoosesThePane()
    {
        const auto general = element(u"General"_qs, QAccessible::PageTab);
        QVERIFY(general);
        QVERIFY(general->state.selected);
        press(u"Map"_qs, QAccessible::PageTab);
        QCOMPARE(settings()->title(), u"Settings — Map"_qs);
        QVERIFY(element(u"Map"_qs, QAccessible::PageTab)->state.selected);
        QVERIFY(!element(u"General"_qs, QAccessible::PageTab)->state.selected);

        // From the keyboard: up and down the sidebar.
        QQuickItem *mapRow = item(u"sidebar-map"_qs);
        mapRow->forceActiveFocus();
        QTest::keyClick(settings(), Qt::Key_Down);
        QCOMPARE(view()->property("pane").toString(), u"alerts"_qs);
        QCOMPARE(settings()->title(), u"Settings — Alerts"_qs);
        QVERIFY(item(u"sidebar-alerts"_qs)->hasActiveFocus());
        QTest::keyClick(settings(), Qt::Key_Up);
        QTest::keyClick(settings(), Qt::Key_Up);
        QCOMPARE(settings()->title(), u"Settings — General"_qs);
    }

    void everyControlHasAName_data()
    {
        QTest::addColumn<QString>("pane");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("general") << u"general"_qs
                                 << QStringList{u"Automatic"_qs, u"Light"_qs, u"Dark"_qs, u"Distances"_qs, u"Miles"_qs,
                                                u"Nautical miles"_qs, u"Kilometers"_qs};
        QTest::newRow("map") << u"map"_qs
                             << QStringList{u"Preset color #FF8A00"_qs, u"Preset color #FFFFFF"_qs, u"Custom color"_qs,
                                            u"Color aircraft by altitude"_qs, u"Marker size"_qs, u"Small"_qs,
                                            u"Preview of an aircraft marker"_qs, u"Show flight trails"_qs,
                                            u"Trail length"_qs, u"30 sec"_qs, u"Trail width"_qs, u"Thick"_qs,
                                            u"Map style"_qs, u"Satellite"_qs, u"Widget accent #73FF99"_qs,
                                            u"Reset to Defaults"_qs};
        QTest::newRow("alerts") << u"alerts"_qs
                                << QStringList{u"Enable alerts"_qs, u"Alert range"_qs, u"Any distance"_qs,
                                               u"Emergency squawks (7500 / 7600 / 7700)"_qs,
                                               u"Aircraft about to pass overhead"_qs, u"Fly-over closeness"_qs,
                                               u"½ mi"_qs, u"Watchlist"_qs, u"Launch Aerolume at login"_qs};
        QTest::newRow("accessibility") << u"accessibility"_qs
                                       << QStringList{u"Reduce motion"_qs, u"Text size"_qs, u"Increase contrast"_qs,
                                                      u"Differentiate without color"_qs};
        QTest::newRow("privacy") << u"privacy"_qs << QStringList{u"Forget Home Location"_qs};
    }

    void everyControlHasAName()
    {
        QFETCH(QString, pane);
        QFETCH(QStringList, names);
        showPane(pane);
        const QSet<QAccessible::Role> controls = {QAccessible::Button,      QAccessible::CheckBox,
                                                  QAccessible::RadioButton, QAccessible::Slider,
                                                  QAccessible::EditableText, QAccessible::PageTab,
                                                  QAccessible::ComboBox,    QAccessible::SpinBox};
        QStringList found;
        for (const Element &e : elements()) {
            if (e.state.invisible)
                continue;
            if (controls.contains(e.role))
                QVERIFY2(!e.name.trimmed().isEmpty(), qPrintable(u"a control without a name: "_qs +
                                                                  QString::fromLatin1(e.object->metaObject()->className())));
            found.append(e.name);
        }
        for (const QString &name : names)
            QVERIFY2(found.contains(name), qPrintable(name + u" not among: "_qs + found.join(u" | ")));
    }

    void alertDefaultsShowWithoutBeingWritten()
    {
        showPane(u"alerts"_qs);
        const QStringList alertKeys = {u"alertsEnabled"_qs,  u"alertEmergency"_qs,   u"alertFlyover"_qs,
                                       u"alertMilitary"_qs,  u"alertHelicopters"_qs, u"alertLowAltitude"_qs,
                                       u"alertWatchlist"_qs, u"alertRangeMiles"_qs,  u"flyoverMissMiles"_qs};
        for (const QString &key : alertKeys)
            QVERIFY2(!defaults()->contains(key), qPrintable(key));

        QVERIFY(element(u"Emergency squawks (7500 / 7600 / 7700)"_qs)->state.checked);
        QVERIFY(!element(u"Military aircraft"_qs)->state.checked);
        QCOMPARE(checkedSegments(u"alertRangePicker"_qs), QStringList{u"Any distance"_qs});
        QCOMPARE(checkedSegments(u"flyoverClosenessPicker"_qs), QStringList{u"¾ mi"_qs});
        // With alerts off the rules are greyed out as a whole; the watchlist and startup stay usable.
        QVERIFY(!item(u"rulesSection"_qs)->isEnabled());
        QVERIFY(!item(u"alertRangePicker"_qs)->isEnabled());
        QVERIFY(item(u"watchlistField"_qs)->isEnabled());
        QVERIFY(item(u"launchAtLoginSwitch"_qs)->isEnabled());
        save(u"settings-alerts-off.png"_qs);
        for (const QString &key : alertKeys)
            QVERIFY2(!defaults()->contains(key), qPrintable(key));

        press(u"Enable alerts"_qs);
        QCOMPARE(defaults()->value(u"alertsEnabled"_qs).toBool(), true);
        QVERIFY(item(u"rulesSection"_qs)->isEnabled());
        // Fly-overs off: only the closeness is disabled, and its stored value stays.
        QVERIFY(!item(u"flyoverClosenessPicker"_qs)->isEnabled());
        press(u"Aircraft about to pass overhead"_qs);
        QVERIFY(item(u"flyoverClosenessPicker"_qs)->isEnabled());
        press(u"2 mi"_qs, QAccessible::RadioButton); // the first "2 mi" is the range's
        press(u"1 mi"_qs, QAccessible::RadioButton);
        QCOMPARE(defaults()->doubleValue(u"flyoverMissMiles"_qs), 1.0);
        QCOMPARE(defaults()->doubleValue(u"alertRangeMiles"_qs), 2.0);
        press(u"Aircraft about to pass overhead"_qs);
        QVERIFY(!item(u"flyoverClosenessPicker"_qs)->isEnabled());
        QVERIFY(item(u"alertRangePicker"_qs)->isEnabled());
        QCOMPARE(defaults()->doubleValue(u"flyoverMissMiles"_qs), 1.0);
        save(u"settings-alerts.png"_qs);
    }

    void watchlistIsStoredOnEveryKeystroke()
    {
        showPane(u"alerts"_qs);
        QQuickItem *field = item(u"watchlistField"_qs);
        field->forceActiveFocus();
        QTest::keyClick(settings(), 'N');
        QCOMPARE(defaults()->stringValue(u"alertWatchlist"_qs), u"N"_qs);
        QTest::keyClick(settings(), '5');
        QCOMPARE(defaults()->stringValue(u"alertWatchlist"_qs), u"N5"_qs);
        QTest::keyClick(settings(), Qt::Key_Backspace);
        QTest::keyClick(settings(), Qt::Key_Backspace);
        QCOMPARE(defaults()->stringValue(u"alertWatchlist"_qs), QString());
    }

    // A stored range of 7 miles is no choice of the picker, yet the engine uses it as it is.
    void storedValuesOutsideTheChoicesSelectNoSegment()
    {
        defaults()->setValue(u"alertRangeMiles"_qs, 7.0);
        defaults()->setValue(u"mapStyleChoice"_qs, u"terrain"_qs);
        showPane(u"alerts"_qs);
        QCOMPARE(item(u"alertRangePicker"_qs)->property("selectedIndex").toInt(), -1);
        QCOMPARE(checkedSegments(u"alertRangePicker"_qs), QStringList());
        showPane(u"map"_qs);
        QCOMPARE(item(u"mapStylePicker"_qs)->property("selectedIndex").toInt(), -1);
        QCOMPARE(checkedSegments(u"mapStylePicker"_qs), QStringList());
        save(u"settings-map-unknown-style.png"_qs);
        // The map draws and names the standard style for it.
        QCOMPARE(TileSources::styleName(u"terrain"_qs), u"Standard"_qs);

        QTemporaryDir dir;
        DefaultsStore store(dir.filePath(u"engine.conf"_qs));
        store.setValue(u"alertsEnabled"_qs, true);
        store.setValue(u"alertRangeMiles"_qs, 7.0);
        DesktopNotifier notifier(QDBusConnection::connectToBus(u"unix:path=/nonexistent/aerolume-bus"_qs, u"none"_qs));
        AlertEngine engine(&store, &notifier, [] { return QDateTime::fromSecsSinceEpoch(1'800'000'000); });
        QStringList alerted;
        connect(&engine, &AlertEngine::alerted, this, [&alerted](const AlertEngine::Alert &alert) { alerted.append(alert.hex); });
        // 5 nm is 5.75 miles, inside; 7 nm is 8.06 miles, outside.
        const auto near = FeedDecoder::decodeAircraft(R"({"hex":"a00001","squawk":"7700","alt_baro":5000,"dst":5.0})");
        const auto far = FeedDecoder::decodeAircraft(R"({"hex":"a00002","squawk":"7700","alt_baro":5000,"dst":7.0})");
        QVERIFY(near.ok() && far.ok());
        engine.evaluate({near.value(), far.value()}, HomeLocation{47.6, -122.3, u"Home"_qs});
        QCOMPARE(alerted, QStringList{u"a00001"_qs});
        defaults()->remove(u"alertRangeMiles"_qs);
        defaults()->remove(u"mapStyleChoice"_qs);
    }

    void colorBindingsFallBack_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("defaultHex");
        QTest::addColumn<QColor>("fallbackColor");
        QTest::newRow("aircraft") << u"planeColorHex"_qs << u"#FF8A00"_qs << QColor(u"#ff9500"_qs);
        QTest::newRow("widgets") << u"widgetColorHex"_qs << u"#73FF99"_qs << QColor(u"#34c759"_qs);
    }

    void colorBindingsFallBack()
    {
        QFETCH(QString, key);
        QFETCH(QString, defaultHex);
        QFETCH(QColor, fallbackColor);
        QTemporaryDir dir;
        DefaultsStore store(dir.filePath(u"colors.conf"_qs));
        ColorBinding binding(&store, nullptr);
        binding.setKey(key);
        binding.setDefaultHex(defaultHex);
        binding.setFallbackColor(fallbackColor);

        // Absent: the key's default.
        QCOMPARE(binding.color(), QColor(defaultHex));
        // Text that does not parse: the fallback colour.
        store.setValue(key, u"sunset"_qs);
        QCOMPARE(binding.color(), fallbackColor);
        // Lower case parses all the same, and stays as typed.
        store.setValue(key, u"#1a2b3c"_qs);
        QCOMPARE(binding.color(), QColor(0x1a, 0x2b, 0x3c));
        QCOMPARE(binding.hex(), u"#1a2b3c"_qs);
        // A colour from the well lands as upper-case "#RRGGBB".
        binding.setColor(QColor::fromRgbF(0.1f, 0.5f, 0.9f));
        QCOMPARE(store.stringValue(key), u"#1A80E6"_qs);
        binding.setColor(QColor::fromHsv(120, 255, 255));
        QCOMPARE(store.stringValue(key), u"#00FF00"_qs);
        // A colour with no sRGB form: the key's default.
        binding.setColor(QColor());
        QCOMPARE(store.stringValue(key), defaultHex);
    }

    void swatchesCompareTheStoredText()
    {
        showPane(u"map"_qs);
        QQuickItem *marker = item(u"previewMarker"_qs);
        QVERIFY(marker && marker->isVisible());

        defaults()->setValue(u"planeColorHex"_qs, u"#ff8a00"_qs);
        QCoreApplication::processEvents();
        for (const Element &e : elements()) {
            if (e.name.startsWith(u"Preset color "_qs))
                QVERIFY2(!e.state.checked, qPrintable(e.name));
        }
        QCOMPARE(marker->property("baseColor").value<QColor>(), QColor(0xFF, 0x8A, 0x00));

        defaults()->setValue(u"planeColorHex"_qs, u"#FF8A00"_qs);
        QVERIFY(element(u"Preset color #FF8A00"_qs)->state.checked);

        // Not a colour: the preview falls back to orange.
        defaults()->setValue(u"planeColorHex"_qs, u"sunset"_qs);
        QCOMPARE(marker->property("baseColor").value<QColor>(), QColor(u"#ff9500"_qs));

        // A click on a swatch stores its hex.
        const auto yellow = element(u"Preset color #FFD60A"_qs);
        QVERIFY(yellow);
        auto *swatch = qobject_cast<QQuickItem *>(yellow->object);
        QTest::mouseClick(settings(), Qt::LeftButton, {}, swatch->mapToScene(QPointF(11, 11)).toPoint());
        QCOMPARE(defaults()->stringValue(u"planeColorHex"_qs), u"#FFD60A"_qs);
        QVERIFY(element(u"Preset color #FFD60A"_qs)->state.checked);
        QCOMPARE(marker->property("baseColor").value<QColor>(), QColor(u"#FFD60A"_qs));

        // The scale picker sizes the preview.
        press(u"Large"_qs, QAccessible::RadioButton);
        QCOMPARE(defaults()->doubleValue(u"markerScale"_qs), 1.3);
        QCOMPARE(marker->width(), 24 * 1.3);
        press(u"Small"_qs, QAccessible::RadioButton);
        QCOMPARE(marker->width(), 24 * 0.8);
    }

    // Without a desktop portal or theme, the desktop's colour dialog is Qt's own.
    void theWellOpensTheColorDialog()
    {
        showPane(u"map"_qs);
        defaults()->setValue(u"widgetColorHex"_qs, u"#FFBF00"_qs);
        const auto wells = [] {
            QList<QObject *> found;
            for (const Element &e : elements()) {
                if (e.name == u"Custom color"_qs)
                    found.append(e.object);
            }
            return found;
        }();
        QCOMPARE(wells.size(), 2);
        // The second well is the widgets'.
        QAccessibleInterface *well = QAccessible::queryAccessibleInterface(wells.last());
        well->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QColorDialog *dialog = nullptr;
        QTRY_VERIFY((dialog = [] {
            for (QWidget *widget : QApplication::topLevelWidgets()) {
                if (auto *found = qobject_cast<QColorDialog *>(widget); found && found->isVisible())
                    return found;
            }
            return static_cast<QColorDialog *>(nullptr);
        }()));
        QCOMPARE(dialog->currentColor(), QColor(0xFF, 0xBF, 0x00));
        dialog->setCurrentColor(QColor(0x12, 0xab, 0xef));
        dialog->accept();
        QTRY_COMPARE(defaults()->stringValue(u"widgetColorHex"_qs), u"#12ABEF"_qs);
        for (const Element &e : elements()) {
            if (e.name.startsWith(u"Widget accent "_qs))
                QVERIFY2(!e.state.checked, qPrintable(e.name));
        }
        defaults()->setValue(u"widgetColorHex"_qs, u"#73FF99"_qs);
        settings()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(settings()));
    }

    void trailPickersShowOnlyWithTrails()
    {
        showPane(u"map"_qs);
        QVERIFY(item(u"trailPickers"_qs)->isVisible());
        press(u"Show flight trails"_qs);
        QCOMPARE(defaults()->value(u"showTrails"_qs).toBool(), false);
        QVERIFY(!item(u"trailPickers"_qs)->isVisible());
        press(u"Show flight trails"_qs);
        QVERIFY(item(u"trailPickers"_qs)->isVisible());
        press(u"5 min"_qs, QAccessible::RadioButton);
        QCOMPARE(defaults()->doubleValue(u"trailMinutes"_qs), 5.0);
    }

    void resetSetsTheMapKeysOnly()
    {
        showPane(u"map"_qs);
        const QList<QPair<QString, QVariant>> mapKeys = {
            {u"planeColorHex"_qs, u"#FF375F"_qs}, {u"markerScale"_qs, 1.3},   {u"mapStyleChoice"_qs, u"hybrid"_qs},
            {u"widgetColorHex"_qs, u"#FFBF00"_qs}, {u"colorByAltitude"_qs, true}, {u"showTrails"_qs, false},
            {u"trailMinutes"_qs, 5.0},            {u"trailWidth"_qs, 3.5}};
        for (const auto &[key, value] : mapKeys + keysResetLeavesAlone)
            defaults()->setValue(key, value);
        const auto restore = qScopeGuard([] {
            for (const auto &[key, value] : keysResetLeavesAlone)
                defaults()->remove(key);
        });

        // Reached and pressed from the keyboard.
        item(u"sidebar-map"_qs)->forceActiveFocus();
        QQuickItem *reset = item(u"resetButton"_qs);
        for (int i = 0; i < 80 && !reset->hasActiveFocus(); ++i)
            QTest::keyClick(settings(), Qt::Key_Tab);
        QVERIFY(reset->hasActiveFocus());
        QTest::keyClick(settings(), Qt::Key_Space);

        QCOMPARE(defaults()->stringValue(u"planeColorHex"_qs), u"#FF8A00"_qs);
        QCOMPARE(defaults()->doubleValue(u"markerScale"_qs), 1.0);
        QCOMPARE(defaults()->stringValue(u"mapStyleChoice"_qs), u"standard"_qs);
        QCOMPARE(defaults()->stringValue(u"widgetColorHex"_qs), u"#73FF99"_qs);
        QCOMPARE(defaults()->boolValue(u"colorByAltitude"_qs), false);
        QCOMPARE(defaults()->boolValue(u"showTrails"_qs), true);
        QCOMPARE(defaults()->doubleValue(u"trailMinutes"_qs), 1.0);
        QCOMPARE(defaults()->doubleValue(u"trailWidth"_qs), 2.0);
        for (const auto &[key, value] : keysResetLeavesAlone)
            QVERIFY2(defaults()->value(key).toString() == value.toString(), qPrintable(key));
        // The pickers show the reset at once.
        QCOMPARE(checkedSegments(u"mapStylePicker"_qs), QStringList{u"Standard"_qs});
        QCOMPARE(checkedSegments(u"trailWidthPicker"_qs), QStringList{u"Regular"_qs});
    }

    void textSizeShowsItsPercentAndReset_data()
    {
        QTest::addColumn<double>("scale");
        QTest::addColumn<QString>("percent");
        QTest::addColumn<bool>("resetShown");
        QTest::newRow("1.0") << 1.0 << u"100%"_qs << false;
        QTest::newRow("1.05") << 1.05 << u"105%"_qs << true;
        QTest::newRow("1.15") << 1.15 << u"115%"_qs << true;
        QTest::newRow("lowest") << 0.8 << u"80%"_qs << true;
        QTest::newRow("highest") << 1.4 << u"140%"_qs << true;
    }

    void textSizeShowsItsPercentAndReset()
    {
        QFETCH(double, scale);
        QFETCH(QString, percent);
        QFETCH(bool, resetShown);
        showPane(u"accessibility"_qs);
        defaults()->setValue(u"textScale"_qs, scale);
        QCOMPARE(item(u"textSizePercent"_qs)->property("text").toString(), percent);
        QCOMPARE(item(u"textSizeReset"_qs)->isVisible(), resetShown);
        QCOMPARE(item(u"textSizeSlider"_qs)->property("value").toDouble(), scale);
        if (resetShown) {
            press(u"Reset text size"_qs);
            QCOMPARE(defaults()->doubleValue(u"textScale"_qs), 1.0);
            QVERIFY(!item(u"textSizeReset"_qs)->isVisible());
        }
    }

    void textSizeSliderStepsByFivePercent()
    {
        showPane(u"accessibility"_qs);
        QQuickItem *slider = item(u"textSizeSlider"_qs);
        QCOMPARE(slider->property("from").toDouble(), 0.8);
        QCOMPARE(slider->property("to").toDouble(), 1.4);
        defaults()->setValue(u"textScale"_qs, 1.0);
        slider->forceActiveFocus();
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(settings(), Qt::Key_Right);
        QCOMPARE(defaults()->doubleValue(u"textScale"_qs), 1.15);
        QCOMPARE(item(u"textSizePercent"_qs)->property("text").toString(), u"115%"_qs);
        save(u"settings-accessibility-115.png"_qs);
        for (int i = 0; i < 20; ++i)
            QTest::keyClick(settings(), Qt::Key_Right);
        QCOMPARE(defaults()->doubleValue(u"textScale"_qs), 1.4);
        defaults()->remove(u"textScale"_qs);
    }

    void unitAndAccentReachTheWidgetsFile()
    {
        QSignalSpy applied(FlightStore::shared(), &FlightStore::refreshApplied);
        FlightStore::shared()->setHomeLocation(47.6062, -122.3321, u"Seattle"_qs);
        QVERIFY(applied.wait());
        QVERIFY(SharedState::read());
        QCOMPARE(SharedState::read()->distanceUnit.value_or(u"mi"_qs), u"mi"_qs);

        showPane(u"general"_qs);
        press(u"Kilometers"_qs, QAccessible::RadioButton);
        QCOMPARE(defaults()->stringValue(u"distanceUnit"_qs), u"km"_qs);
        QCOMPARE(SharedState::read()->distanceUnit, u"km"_qs);

        showPane(u"map"_qs);
        press(u"Widget accent #C57FFF"_qs);
        QCOMPARE(defaults()->stringValue(u"widgetColorHex"_qs), u"#C57FFF"_qs);
        QCOMPARE(SharedState::read()->widgetColorHex, u"#C57FFF"_qs);
        // The list in the main window reads the unit at once.
        QTRY_VERIFY(texts(mainWindow()).join(u' ').contains(u" km"_qs));
        press(u"Widget accent #73FF99"_qs);
        showPane(u"general"_qs);
        press(u"Miles"_qs, QAccessible::RadioButton);
        QCOMPARE(SharedState::read()->distanceUnit, u"mi"_qs);
    }

    void launchAtLoginWritesTheAutostartEntry()
    {
        const QString entry = m_dir.filePath(u"XDG_CONFIG_HOME/autostart/aerolume.desktop"_qs);
        showPane(u"general"_qs);
        showPane(u"alerts"_qs);
        QVERIFY(!element(u"Launch Aerolume at login"_qs)->state.checked);
        press(u"Launch Aerolume at login"_qs);
        QVERIFY(QFile::exists(entry));
        QVERIFY(element(u"Launch Aerolume at login"_qs)->state.checked);
        QVERIFY(!item(u"loginItemError"_qs)->isVisible());

        // A pane made again reads the entry.
        showPane(u"general"_qs);
        showPane(u"alerts"_qs);
        QVERIFY(element(u"Launch Aerolume at login"_qs)->state.checked);
        press(u"Launch Aerolume at login"_qs);
        QVERIFY(!QFile::exists(entry));
        QVERIFY(!element(u"Launch Aerolume at login"_qs)->state.checked);
    }

    // Root writes into a read-only folder, and tests may run as root: the autostart folder's place is
    // taken by a regular file, which nobody can write into.
    void anUnwritableFolderShowsTheReasonAndTheTruth()
    {
        const QString folder = m_dir.filePath(u"XDG_CONFIG_HOME/autostart"_qs);
        QDir(folder).removeRecursively();
        {
            QFile blocker(folder);
            QVERIFY(blocker.open(QIODevice::WriteOnly));
        }
        showPane(u"general"_qs);
        showPane(u"alerts"_qs);
        press(u"Launch Aerolume at login"_qs);
        QQuickItem *error = item(u"loginItemError"_qs);
        QVERIFY(error->isVisible());
        const QString text = error->property("text").toString();
        QVERIFY2(text.startsWith(u"Couldn't update the login item: "_qs) &&
                     text.size() > QStringView(u"Couldn't update the login item: ").size(),
                 qPrintable(text));
        // The switch falls back to what the desktop will do.
        QVERIFY(!element(u"Launch Aerolume at login"_qs)->state.checked);
        // The pane scrolls down to the error.
        QVERIFY(error->mapToScene(QPointF(0, error->height())).y() <= settings()->height());
        save(u"settings-alerts-login-error.png"_qs);
        QVERIFY(QFile::remove(folder));
    }

    void panesRender_data()
    {
        QTest::addColumn<QString>("pane");
        QTest::addColumn<QString>("title");
        QTest::newRow("general") << u"general"_qs << u"Settings — General"_qs;
        QTest::newRow("map") << u"map"_qs << u"Settings — Map"_qs;
        QTest::newRow("alerts") << u"alerts"_qs << u"Settings — Alerts"_qs;
        QTest::newRow("accessibility") << u"accessibility"_qs << u"Settings — Accessibility"_qs;
        QTest::newRow("privacy") << u"privacy"_qs << u"Settings — Privacy"_qs;
    }

    void panesRender()
    {
        QFETCH(QString, pane);
        QFETCH(QString, title);
        showPane(pane);
        QCOMPARE(settings()->title(), title);
        save(u"settings-"_qs + pane + u".png"_qs);
    }

    void darkAppearanceRenders()
    {
        showPane(u"general"_qs);
        press(u"Dark"_qs, QAccessible::RadioButton);
        QCOMPARE(defaults()->stringValue(u"appearanceChoice"_qs), u"dark"_qs);
        QVERIFY(element(u"Dark"_qs, QAccessible::RadioButton)->state.checked);
        save(u"settings-general-dark.png"_qs);
        showPane(u"map"_qs);
        save(u"settings-map-dark.png"_qs);
        defaults()->remove(u"appearanceChoice"_qs);
    }

    void forgettingHomeReturnsToSetup()
    {
        QVERIFY(FlightStore::shared()->home());
        QVERIFY(QFile::exists(SharedState::filePath()));
        showPane(u"privacy"_qs);
        press(u"Forget Home Location"_qs);
        QVERIFY(!FlightStore::shared()->home());
        QVERIFY(!defaults()->contains(u"homeLocation"_qs));
        QVERIFY(!QFile::exists(SharedState::filePath()));
        QVERIFY(!SharedState::read());
        QTRY_VERIFY(texts(mainWindow()).contains(u"Welcome to Aerolume"_qs));
    }
};

QTEST_MAIN(SettingsViewTest)
#include "SettingsViewTest.moc"
