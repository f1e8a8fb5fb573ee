pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Morvo.Panels

// A decision that an agent waits for.
Rectangle {
    id: card

    required property PanelLook look
    required property ApprovalPrompt prompt

    // The keyboard never stands ready on a button when the next request comes.
    function letGo(button: PanelButton) {
        if (!button.enabled) {
            button.focus = false
        }
    }

    // Each request is read from its first line on.
    Connections {
        target: card.prompt

        function onRequestChanged() {
            scroll.contentY = 0
        }
    }
    Binding {
        target: card.prompt
        property: "endShown"
        value: scroll.atYEnd
    }

    implicitHeight: content.implicitHeight + 24
    radius: 10
    color: card.look.tinted(card.look.coral, 0.1)
    border.width: 1
    border.color: card.look.tinted(card.look.coral, 0.35)

    Accessible.role: Accessible.AlertMessage
    Accessible.name: card.prompt.question
    Accessible.description: card.prompt.summary

    ColumnLayout {
        id: content

        anchors {
            left: parent.left
            right: parent.right
            top: parent.top
            margins: 12
        }
        spacing: 8

        RowLayout {
            Layout.fillWidth: true
            spacing: 8

            SymbolItem {
                Layout.alignment: Qt.AlignTop
                implicitWidth: 18
                implicitHeight: 18
                name: "exclamationmark.shield.fill"
                color: card.look.coral
            }
            PanelLabel {
                Layout.fillWidth: true
                look: card.look
                size: 13
                text: card.prompt.question
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
                maximumLineCount: 3
                elide: Text.ElideRight
            }
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: Math.min(summary.implicitHeight, 112) + 16
            visible: card.prompt.summary !== ""
            radius: 8
            color: card.look.tinted(card.look.foam, 0.06)

            Flickable {
                id: scroll

                anchors.fill: parent
                anchors.margins: 8
                contentWidth: width
                contentHeight: summary.implicitHeight
                boundsBehavior: Flickable.StopAtBounds
                clip: true
                activeFocusOnTab: contentHeight > height
                Keys.onUpPressed: bar.decrease()
                Keys.onDownPressed: bar.increase()

                Accessible.role: Accessible.Pane
                Accessible.name: summary.text

                T.ScrollBar.vertical: PanelScroll {
                    id: bar

                    look: card.look
                }
                PanelLabel {
                    id: summary

                    width: scroll.width - 8
                    look: card.look
                    size: 12
                    text: card.prompt.summary
                    font.family: card.look.fixedFamily
                    wrapMode: Text.WrapAnywhere
                    color: card.look.textOn(card.look.foam, 0.9, card.look.card)
                }
            }
            FocusRing {
                look: card.look
                radius: 10
                shown: scroll.activeFocus
            }
        }
        PanelLabel {
            Layout.fillWidth: true
            visible: text !== ""
            look: card.look
            size: 11
            text: card.prompt.note
            wrapMode: Text.Wrap
            color: card.look.textOn(card.look.foam, 0.6, card.look.card)
        }
        RowLayout {
            Layout.fillWidth: true
            spacing: 8

            PanelButton {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                look: card.look
                text: card.prompt.rejectLabel
                edge: card.look.tinted(card.look.foam, 0.18)
                enabled: card.prompt.rejectable
                takesReturn: false
                onEnabledChanged: card.letGo(this)
                onClicked: card.prompt.reject()
                Keys.onPressed: event => {
                    event.accepted = card.prompt.keyPressed(ApprovalPrompt.Reject, event.key, event.isAutoRepeat)
                }
            }
            PanelButton {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                look: card.look
                text: card.prompt.approveLabel
                ground: card.look.theme
                ink: card.look.onTheme
                enabled: card.prompt.approvable
                takesReturn: false
                onEnabledChanged: card.letGo(this)
                onClicked: card.prompt.approve()
                Keys.onPressed: event => {
                    event.accepted = card.prompt.keyPressed(ApprovalPrompt.Approve, event.key, event.isAutoRepeat)
                }
            }
        }
    }
}
