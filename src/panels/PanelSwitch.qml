import QtQuick
import QtQuick.Templates as T
import Morvo.Panels

// A switch. Shows what it is told; `flipped` tells what the user wants.
T.AbstractButton {
    id: toggle

    required property PanelLook look
    required property bool on
    property bool animated: false

    signal flipped(bool on)

    implicitWidth: 36
    implicitHeight: 22
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    onClicked: toggle.flipped(!toggle.on)
    Keys.onReturnPressed: toggle.clicked()
    Keys.onEnterPressed: toggle.clicked()

    Accessible.role: Accessible.CheckBox
    Accessible.name: toggle.text
    Accessible.checkable: true
    Accessible.checked: toggle.on
    Accessible.onPressAction: toggle.clicked()
    Accessible.onToggleAction: toggle.clicked()

    background: Rectangle {
        radius: height / 2
        color: toggle.on ? toggle.look.theme : toggle.look.tinted(toggle.look.foam, 0.16)
        border.width: toggle.on ? 0 : 1
        border.color: toggle.look.tinted(toggle.look.foam, 0.3)

        FocusRing {
            look: toggle.look
            radius: height / 2
            shown: toggle.visualFocus
        }
    }
    contentItem: Item {
        Rectangle {
            readonly property real gap: 3

            y: gap
            x: toggle.on ? parent.width - width - gap : gap
            width: height
            height: parent.height - 2 * gap
            radius: height / 2
            color: toggle.on ? toggle.look.onTheme : toggle.look.tinted(toggle.look.foam, 0.75)

            Behavior on x {
                enabled: toggle.animated
                NumberAnimation {
                    duration: 120
                    easing.type: Easing.OutCubic
                }
            }
        }
    }
}
