import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Aerolume.App

// What goes out over the network, and forgetting home.
SettingsPane {
    id: pane
    title: qsTr("Privacy")

    // The settings window's SettingsModel.
    property SettingsModel model

    SettingsSection {
        title: qsTr("What leaves this computer")
        SettingsCaption {
            text: pane.model ? pane.model.privacyText : ""
        }
    }

    SettingsSection {
        title: qsTr("Home location")
        ColumnLayout {
            spacing: 2
            SettingsCaption {
                text: qsTr("Your home is stored locally and shared with Aerolume's widgets through a private file. Forgetting it clears both — the app and widgets return to setup.")
            }
            Button {
                objectName: "forgetHomeButton"
                text: qsTr("Forget Home Location")
                onClicked: if (pane.model) pane.model.forgetHome()
                palette.buttonText: Theme.systemRed
                Accessible.name: text
                Accessible.onPressAction: clicked()
            }
        }
    }
}
