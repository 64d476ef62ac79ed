#pragma once

#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;
class QQuickWindow;
class UpdaterModel;

// Shows the one update dialog whenever the updater starts a session, in the QML engine this belongs to.
// "Check for Updates…" and the sidebar's banner call UpdateDialogPresenter.checkForUpdates(); a session
// started on UpdaterModel directly shows the dialog as well, once this object exists. The dialog is made
// on first need and kept (closing only hides it).
class UpdateDialogPresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates CONSTANT)

public:
    UpdateDialogPresenter(QQmlEngine *engine, UpdaterModel *updater, QObject *parent = nullptr);
    ~UpdateDialogPresenter() override;
    static UpdateDialogPresenter *create(QQmlEngine *engine, QJSEngine *);

    static QUrl dialogUrl() { return QUrl(u"qrc:/qt/qml/Aerolume/App/UpdateDialog.qml"_qs); }

    // False without an update feed: "Check for Updates…" is then left out.
    [[nodiscard]] bool canCheckForUpdates() const;

    // The user-driven check: starts the session, and so shows the dialog.
    Q_INVOKABLE void checkForUpdates();

    [[nodiscard]] QQuickWindow *dialog() const { return m_dialog; }

private:
    void present();

    QPointer<QQmlEngine> m_engine;
    QPointer<UpdaterModel> m_updater;
    QPointer<QQuickWindow> m_dialog;
};
