pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Morvo.Panels

// The panel by the tray icon. It shows what the store publishes and hands every action back.
FocusScope {
    id: panel

    required property PetStore store
    required property PanelEntries entries
    required property PanelStage stage
    // The height of its screen that is free of bars; below 1 for no screen.
    property int screenHeight: 0
    property int tab: tabs.opening

    readonly property real spacing: 10
    readonly property int chatTab: 0
    readonly property int monitorTab: 1
    readonly property int petTab: 2

    signal closeRequested

    function takeTab(wanted: int) {
        panel.tab = wanted
        panel.tabAppeared()
    }
    function tabAppeared() {
        if (panel.tab === panel.monitorTab) {
            monitorTab.appeared()
        }
    }
    // The host calls it whenever it brings the panel up.
    function appeared() {
        look.refresh()
        panel.tabAppeared()
        panel.forceActiveFocus()
        if (panel.tab === panel.chatTab) {
            chatTab.takeFocus()
        }
    }

    implicitWidth: tabs.panelWidth()
    implicitHeight: tabs.panelHeight(panel.screenHeight)
    width: implicitWidth
    height: implicitHeight
    focus: true
    Keys.onEscapePressed: panel.closeRequested()

    Accessible.role: Accessible.Pane
    Accessible.name: tabs.panelName

    PanelLook {
        id: look

        store: panel.store
    }
    TabsSection {
        id: tabs

        store: panel.store
        look: look
    }
    HeaderSection {
        id: header

        store: panel.store
        look: look
    }
    ApprovalPrompt {
        id: prompt

        store: panel.store
        window: panel.Window.window
        cardShown: prompt.pending && approval.height >= card.implicitHeight
    }

    Rectangle {
        anchors.fill: parent
        radius: 12
        color: look.abyss
        border.width: 1
        border.color: look.tinted(look.foam, 0.12)
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 14
        spacing: panel.spacing

        RowLayout {
            Layout.fillWidth: true
            spacing: 12

            PetStageItem {
                implicitWidth: 60
                implicitHeight: 56
                stage: panel.stage
                Accessible.role: Accessible.Graphic
                Accessible.name: header.name
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2

                PanelLabel {
                    Layout.fillWidth: true
                    look: look
                    size: 15
                    text: header.name
                    font.weight: Font.DemiBold
                    elide: Text.ElideRight
                }
                PanelLabel {
                    Layout.fillWidth: true
                    look: look
                    size: 11
                    text: header.state
                    color: header.stateColor
                    elide: Text.ElideRight
                }
                PanelLabel {
                    Layout.fillWidth: true
                    visible: text !== ""
                    look: look
                    size: 10
                    text: header.trouble
                    color: header.troubleColor
                    elide: Text.ElideRight
                }
            }
            PanelButton {
                Layout.alignment: Qt.AlignTop
                implicitWidth: 30
                implicitHeight: 30
                leftPadding: 0
                rightPadding: 0
                visible: panel.entries.settings
                look: look
                symbol: "gearshape"
                symbolSize: 17
                ground: "transparent"
                help: header.settingsHelp
                onClicked: panel.entries.openSettings()
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 0

            // The card makes its room, and the gap beneath it, smoothly.
            Item {
                id: approval

                readonly property real wanted: prompt.pending ? card.implicitHeight + panel.spacing : 0

                Layout.fillWidth: true
                implicitHeight: approval.wanted
                visible: approval.implicitHeight > 0 || prompt.pending
                clip: true

                Behavior on implicitHeight {
                    enabled: panel.Window.visibility !== Window.Hidden
                    NumberAnimation {
                        duration: 140
                        easing.type: Easing.OutCubic
                    }
                }
                ApprovalCard {
                    id: card

                    width: parent.width
                    look: look
                    prompt: prompt
                }
            }
            RowLayout {
                Layout.fillWidth: true
                spacing: 6
                Accessible.role: Accessible.PageTabList
                Accessible.name: tabs.panelName

                Repeater {
                    model: tabs.rows

                    delegate: PanelTabButton {
                        id: tabButton

                        required property int index
                        required property string label
                        required property string symbolName

                        Layout.fillWidth: true
                        Layout.preferredWidth: 1
                        look: look
                        text: tabButton.label
                        symbol: tabButton.symbolName
                        chosen: panel.tab === tabButton.index
                        onClicked: panel.takeTab(tabButton.index)
                    }
                }
            }
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            ChatTab {
                id: chatTab

                anchors.fill: parent
                visible: panel.tab === panel.chatTab
                store: panel.store
                look: look
                entries: panel.entries
            }
            ScrollArea {
                anchors.fill: parent
                visible: panel.tab === panel.monitorTab
                look: look

                MonitorTab {
                    id: monitorTab

                    width: parent.width
                    store: panel.store
                    look: look
                    animated: panel.Window.visibility !== Window.Hidden
                }
            }
            ScrollArea {
                anchors.fill: parent
                visible: panel.tab === panel.petTab
                look: look

                PetTab {
                    width: parent.width
                    store: panel.store
                    look: look
                    entries: panel.entries
                    animated: panel.Window.visibility !== Window.Hidden
                }
            }
        }
    }
}
