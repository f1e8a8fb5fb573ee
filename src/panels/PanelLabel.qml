import QtQuick
import Morvo.Panels

// A text of the panel, in its own size and colour. Never markup.
Text {
    id: label

    required property PanelLook look
    required property real size

    textFormat: Text.PlainText
    font.pixelSize: Math.round(label.size * label.look.fontScale)
    color: label.look.foam
    Accessible.role: Accessible.StaticText
    Accessible.name: label.text
}
