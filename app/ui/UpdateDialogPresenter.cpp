#include "UpdateDialogPresenter.h"

#include "UpdaterModel.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

UpdateDialogPresenter::UpdateDialogPresenter(QQmlEngine *engine, UpdaterModel *updater, QObject *parent)
    : QObject(parent), m_engine(engine), m_updater(updater)
{
    if (m_updater) {
        connect(m_updater, &UpdaterModel::sessionStarted, this, &UpdateDialogPresenter::present);
        connect(m_updater, &UpdaterModel::sessionRaiseRequested, this, &UpdateDialogPresenter::present);
    }
}

UpdateDialogPresenter::~UpdateDialogPresenter()
{
    delete m_dialog.data();
}

UpdateDialogPresenter *UpdateDialogPresenter::create(QQmlEngine *engine, QJSEngine *)
{
    return new UpdateDialogPresenter(engine, UpdaterModel::shared());
}

bool UpdateDialogPresenter::canCheckForUpdates() const
{
    return m_updater && m_updater->hasFeed();
}

void UpdateDialogPresenter::checkForUpdates()
{
    if (m_updater)
        m_updater->checkForUpdates();
}

void UpdateDialogPresenter::present()
{
    if (!m_dialog) {
        if (!m_engine)
            return;
        QQmlComponent component(m_engine, dialogUrl());
        QObject *object = component.create();
        m_dialog = qobject_cast<QQuickWindow *>(object);
        if (!m_dialog) {
            qWarning().noquote() << "The update dialog could not be made:" << component.errorString();
            delete object;
            return;
        }
        QQmlEngine::setObjectOwnership(m_dialog, QQmlEngine::CppOwnership);
    }
    m_dialog->show();
    m_dialog->raise();
    m_dialog->requestActivate();
}
