pragma ComponentBehavior: Bound

import QtQuick
import Morvo.Panels

// A button with a text, a symbol, or both.
PressButton {
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
    // The symbol stands behind the text.
    property bool symbolLast: false

    implicitWidth: Math.ceil(button.implicitContentWidth) + button.leftPadding + button.rightPadding
    implicitHeight: Math.max(28, button.implicitContentHeight + button.topPadding + button.bottomPadding)
    leftPadding: 10
    rightPadding: 10
    topPadding: 4
    bottomPadding: 4
    opacity: button.enabled ? 1 : 0.45

    Accessible.name: button.text !== "" ? button.text : button.help
    Accessible.description: button.help

    background: ButtonGround {
        look: button.look
        button: button
        radius: button.corner
        color: button.ground
        border.width: button.edge.a > 0 ? 1 : 0
        border.color: button.edge
    }
    contentItem: ButtonFace {
        look: button.look
        symbol: button.symbol
        symbolSize: button.symbolSize
        symbolLast: button.symbolLast
        size: button.size
        text: button.text
        ink: button.ink
    }
    PanelTip {
        look: button.look
        shown: button.hovered && button.help !== ""
        text: button.help
    }
}
