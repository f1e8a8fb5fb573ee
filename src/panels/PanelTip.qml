import QtQuick
import QtQuick.Templates as T
import Morvo.Panels

// A word of help beneath what the pointer rests on.
T.ToolTip {
    id: tip

    required property PanelLook look
    required property bool shown

    y: parent ? parent.height + 4 : 0
    margins: 8
    padding: 8
    delay: 600
    visible: tip.shown
    implicitWidth: Math.min(260, tip.contentItem.implicitWidth + 16)
    implicitHeight: tip.contentItem.implicitHeight + 16

    contentItem: PanelLabel {
        look: tip.look
        size: 11
        text: tip.text
        wrapMode: Text.Wrap
    }
    background: Rectangle {
        radius: 8
        color: tip.look.abyss
        border.width: 1
        border.color: tip.look.tinted(tip.look.foam, 0.2)
    }
}
