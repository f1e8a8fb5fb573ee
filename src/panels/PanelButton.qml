pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Morvo.Panels

// A button with a text, a symbol, or both.
T.AbstractButton {
    id: button

    required property PanelLook look
    property string symbol: ""
    property real symbolSize: 14
    property real size: 12
    property color ink: button.look.textOn(button.look.foam, 0.85, button.ground)
    property color ground: button.look.tinted(button.look.foam, 0.08)
    property color edge: "transparent"
    property real corner: 8
    property string help: ""

    readonly property real symbolRoom: button.symbol !== "" ? button.symbolSize * button.look.fontScale : 0
    readonly property real gap: button.symbol !== "" && button.text !== "" ? 6 : 0

    implicitWidth: Math.ceil(button.symbolRoom + button.gap + (button.text !== "" ? label.implicitWidth : 0)) + button.leftPadding + button.rightPadding
    implicitHeight: Math.max(28, content.implicitHeight + button.topPadding + button.bottomPadding)
    leftPadding: 10
    rightPadding: 10
    topPadding: 4
    bottomPadding: 4
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    opacity: button.enabled ? 1 : 0.45
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    Accessible.role: Accessible.Button
    Accessible.name: button.text !== "" ? button.text : button.help
    Accessible.description: button.help
    Accessible.onPressAction: button.clicked()

    background: Rectangle {
        radius: button.corner
        color: button.ground
        border.width: button.edge.a > 0 ? 1 : 0
        border.color: button.edge

        Rectangle {
            anchors.fill: parent
            radius: button.corner
            color: button.look.foam
            opacity: button.down ? 0.12 : (button.hovered && button.enabled ? 0.06 : 0)
        }
        FocusRing {
            look: button.look
            radius: button.corner + 2
            shown: button.visualFocus
        }
    }
    contentItem: Item {
        implicitHeight: content.implicitHeight

        Row {
            id: content

            anchors.centerIn: parent
            spacing: button.gap

            SymbolItem {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.symbol !== ""
                width: button.symbolRoom
                height: button.symbolSize * button.look.fontScale
                name: button.symbol
                color: button.ink
            }
            PanelLabel {
                id: label

                anchors.verticalCenter: parent.verticalCenter
                visible: text !== ""
                width: Math.min(implicitWidth, Math.max(0, button.availableWidth - button.symbolRoom - button.gap))
                elide: Text.ElideRight
                look: button.look
                size: button.size
                text: button.text
                color: button.ink
                font.weight: Font.Medium
                Accessible.ignored: true
            }
        }
    }
    PanelTip {
        look: button.look
        shown: button.hovered && button.help !== ""
        text: button.help
    }
}
