import QtQuick
import Morvo.Panels

// One message: the user's on the right, the pet's on the left.
Item {
    id: bubble

    required property PanelLook look
    required property real timelineWidth
    required property string text
    required property bool isUser

    readonly property real gap: 36

    width: bubble.timelineWidth
    implicitHeight: ground.height

    Accessible.role: Accessible.ListItem
    Accessible.name: bubble.text

    Rectangle {
        id: ground

        x: bubble.isUser ? parent.width - width - 8 : 0
        width: Math.min(words.implicitWidth + 22, 240, bubble.timelineWidth - bubble.gap - 8)
        height: words.implicitHeight + 16
        radius: 12
        color: bubble.isUser ? bubble.look.theme : bubble.look.tinted(bubble.look.foam, 0.12)

        TextEdit {
            id: words

            x: 11
            y: 8
            width: ground.width - 22
            text: bubble.text
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            readOnly: true
            selectByMouse: true
            activeFocusOnPress: true
            font.pixelSize: Math.round(13 * bubble.look.fontScale)
            color: bubble.isUser ? bubble.look.onTheme : bubble.look.foam
            selectionColor: bubble.isUser ? bubble.look.onTheme : bubble.look.theme
            selectedTextColor: bubble.isUser ? bubble.look.theme : bubble.look.onTheme
            Accessible.ignored: true
        }
    }
}
