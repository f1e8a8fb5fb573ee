pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Morvo.Panels

// What was said, the newest at the end.
Rectangle {
    id: ground

    required property PanelLook look
    required property ChatSection chat

    radius: 12
    color: ground.look.tinted(ground.look.foam, 0.04)

    PanelLabel {
        anchors.centerIn: parent
        width: parent.width - 60
        visible: ground.chat.empty
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        look: ground.look
        size: 12
        text: ground.chat.invitation
        color: ground.look.text(ground.look.foam, 0.45)
    }
    ListView {
        id: timeline

        anchors.fill: parent
        anchors.margins: 8
        visible: !ground.chat.empty
        spacing: 6
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: true
        reuseItems: true
        keyNavigationEnabled: false
        Keys.onUpPressed: scrollBar.decrease()
        Keys.onDownPressed: scrollBar.increase()
        model: ground.chat.messages

        // Whether one reads at the end; what takes room or gives it does not move one from there.
        property bool showsEnd: true
        property bool placing: false
        // Before the first picture nobody reads: where it stands is the layout's doing.
        property bool drawn: false

        function scrollToBottom() {
            timeline.showsEnd = true
            timeline.placing = true
            // The heights of rows that were never seen are guesses, so the first try may miss.
            for (let tries = 0; tries < 4 && (tries === 0 || !timeline.atYEnd); ++tries) {
                timeline.forceLayout()
                timeline.positionViewAtEnd()
            }
            timeline.placing = false
        }
        function keepEnd() {
            if (timeline.showsEnd) {
                timeline.scrollToBottom()
            }
        }

        Accessible.role: Accessible.List
        Accessible.name: ground.chat.timelineName
        T.ScrollBar.vertical: PanelScroll {
            id: scrollBar

            look: ground.look
        }
        delegate: ChatBubble {
            look: ground.look
            timelineWidth: timeline.width
        }
        onVisibleChanged: timeline.keepEnd()
        onHeightChanged: timeline.keepEnd()
        onContentYChanged: {
            if (timeline.drawn && !timeline.placing) {
                timeline.showsEnd = timeline.atYEnd
            }
        }

        Connections {
            target: timeline.drawn ? null : ground.Window.window

            function onFrameSwapped() {
                timeline.keepEnd()
                timeline.drawn = timeline.visible
            }
        }
        Connections {
            target: ground.look

            function onChanged() {
                timeline.keepEnd()
            }
        }
        Connections {
            target: ground.chat

            function onMessagesShown() {
                timeline.scrollToBottom()
            }
        }
    }
    FocusRing {
        look: ground.look
        radius: 13
        anchors.margins: 0
        shown: timeline.activeFocus
    }
}
