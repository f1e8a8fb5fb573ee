pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Morvo.Panels

// What is left of the quota, the talk with the pet, and the line to write in.
ColumnLayout {
    id: tab

    required property PetStore store
    required property PanelLook look
    required property PanelEntries entries
    property alias draft: field.text

    function takeFocus() {
        if (field.visible && field.enabled) {
            field.forceActiveFocus()
        }
    }

    spacing: 10

    ChatSection {
        id: chat

        store: tab.store
        look: tab.look
        entries: tab.entries
    }
    QuotaSection {
        id: quota

        store: tab.store
        look: tab.look
    }

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: bars.implicitHeight + 18
        radius: 8
        color: tab.look.tinted(tab.look.foam, 0.05)

        ColumnLayout {
            id: bars

            anchors {
                left: parent.left
                right: parent.right
                top: parent.top
                margins: 9
            }
            spacing: 8

            Repeater {
                model: quota.rows

                delegate: ColumnLayout {
                    id: bar

                    required property string title
                    required property string value
                    required property real progress
                    required property bool isUnlimited
                    required property color fill
                    required property color valueColor

                    Layout.fillWidth: true
                    spacing: 4

                    Accessible.role: Accessible.ProgressBar
                    Accessible.name: bar.title
                    Accessible.description: bar.value

                    RowLayout {
                        Layout.fillWidth: true
                        PanelLabel {
                            Layout.fillWidth: true
                            look: tab.look
                            size: 11
                            text: bar.title
                            color: tab.look.text(tab.look.foam, 0.75)
                        }
                        PanelLabel {
                            look: tab.look
                            size: 11
                            text: bar.value
                            color: bar.valueColor
                        }
                    }
                    Rectangle {
                        id: track

                        Layout.fillWidth: true
                        implicitHeight: 5
                        radius: 2.5
                        color: tab.look.tinted(tab.look.foam, 0.08)

                        Rectangle {
                            width: quota.fillWidth(bar.progress, bar.isUnlimited, track.width)
                            height: parent.height
                            radius: 2.5
                            color: bar.fill
                        }
                    }
                }
            }
        }
    }
    PanelLabel {
        Layout.fillWidth: true
        visible: text !== ""
        look: tab.look
        size: 11
        text: chat.spentLine
        font.weight: Font.Medium
        color: tab.look.textOn(tab.look.coral, 1, tab.look.abyss)
        wrapMode: Text.Wrap
    }
    ChatTimeline {
        Layout.fillWidth: true
        Layout.fillHeight: true
        look: tab.look
        chat: chat
    }
    RowLayout {
        Layout.fillWidth: true
        visible: tab.entries.chat
        spacing: 8

        function submit() {
            if (chat.send(field.text)) {
                field.clear()
            }
        }

        PanelField {
            id: field

            Layout.fillWidth: true
            look: tab.look
            placeholderText: chat.placeholder
            enabled: chat.typable
            onAccepted: parent.submit()
        }
        PanelButton {
            implicitWidth: 32
            implicitHeight: 32
            leftPadding: 0
            rightPadding: 0
            look: tab.look
            symbol: "arrow.up.circle.fill"
            symbolSize: 24
            ground: "transparent"
            ink: chat.sendColor
            help: chat.sendHelp
            corner: 16
            enabled: chat.sendable
            onClicked: parent.submit()
        }
    }
}
