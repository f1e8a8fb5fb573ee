pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Morvo.Panels

// What deserves the eye, how full every window is, and what is looked at.
ColumnLayout {
    id: tab

    required property PetStore store
    required property PanelLook look
    required property bool animated

    function appeared() {
        monitor.appeared()
    }

    spacing: 10

    AttentionSection {
        id: attention

        store: tab.store
        look: tab.look
    }
    LoadsSection {
        id: loads

        store: tab.store
        look: tab.look
    }
    MonitorSection {
        id: monitor

        store: tab.store
        look: tab.look
    }

    PanelCard {
        Layout.fillWidth: true
        visible: attention.shown
        look: tab.look
        spacing: 5
        color: attention.ground
        border.width: 1
        border.color: attention.edge
        Accessible.role: Accessible.Grouping
        Accessible.name: attention.title

        PanelLabel {
            look: tab.look
            size: 11
            text: attention.title
            color: tab.look.textOn(tab.look.foam, 0.75, attention.ground)
        }
        PanelLabel {
            Layout.fillWidth: true
            look: tab.look
            size: 13
            text: attention.headline
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
        }
        PanelLabel {
            Layout.fillWidth: true
            look: tab.look
            size: 11
            text: attention.explain
            color: tab.look.textOn(tab.look.foam, 0.75, attention.ground)
            wrapMode: Text.Wrap
        }
        Repeater {
            model: attention.rows

            delegate: RowLayout {
                id: item

                required property string title
                required property string detail
                required property color dot

                Layout.fillWidth: true
                Layout.topMargin: 2
                spacing: 8

                Accessible.role: Accessible.ListItem
                Accessible.name: item.title + " " + item.detail

                Rectangle {
                    Layout.alignment: Qt.AlignTop
                    Layout.topMargin: (title.font.pixelSize * 1.45 - height) / 2
                    implicitWidth: 6
                    implicitHeight: 6
                    radius: 3
                    color: item.dot
                }
                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 1

                    PanelLabel {
                        id: title

                        Layout.fillWidth: true
                        look: tab.look
                        size: 12
                        text: item.title
                        wrapMode: Text.Wrap
                    }
                    PanelLabel {
                        Layout.fillWidth: true
                        look: tab.look
                        size: 10
                        text: item.detail
                        color: tab.look.textOn(tab.look.foam, 0.62, attention.ground)
                        wrapMode: Text.Wrap
                        maximumLineCount: 2
                        elide: Text.ElideRight
                    }
                }
            }
        }
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 8

        RowLayout {
            Layout.fillWidth: true

            PanelLabel {
                Layout.fillWidth: true
                look: tab.look
                size: 12
                text: loads.title
                font.weight: Font.DemiBold
            }
        }
        PanelLabel {
            Layout.fillWidth: true
            Layout.topMargin: -4
            Layout.rightMargin: 44
            look: tab.look
            size: 9
            text: loads.caption
            color: tab.look.textOn(tab.look.foam, 0.45, tab.look.abyss)
            wrapMode: Text.Wrap
        }
        PanelLabel {
            Layout.fillWidth: true
            visible: loads.empty
            look: tab.look
            size: 11
            text: loads.emptyLine
            color: tab.look.textOn(tab.look.foam, 0.55, tab.look.abyss)
            wrapMode: Text.Wrap
        }
        Repeater {
            model: loads.rows

            delegate: PanelCard {
                id: load

                required property string name
                required property string trust
                required property string trustCaption
                required property color trustColor
                required property string windowTitle
                required property real windowShare
                required property string windowPercent
                required property color windowPercentColor
                required property string windowTokens
                required property color windowFill
                required property string weekTitle
                required property real weekShare
                required property string weekPercent
                required property color weekPercentColor
                required property string weekTokens
                required property color weekFill

                Layout.fillWidth: true
                look: tab.look
                spacing: 6

                Accessible.role: Accessible.Grouping
                Accessible.name: load.name + " " + load.trust
                Accessible.description: load.trustCaption

                RowLayout {
                    Layout.fillWidth: true
                    spacing: 6

                    PanelLabel {
                        Layout.maximumWidth: 200
                        look: tab.look
                        size: 13
                        text: load.name
                        elide: Text.ElideRight
                        font.weight: Font.Medium
                    }
                    PanelLabel {
                        Layout.fillWidth: true
                        look: tab.look
                        size: 9
                        text: load.trust
                        font.weight: Font.Medium
                        color: load.trustColor

                        HoverHandler {
                            id: hover
                        }
                        PanelTip {
                            look: tab.look
                            shown: hover.hovered
                            text: load.trustCaption
                        }
                    }
                }
                LoadBar {
                    Layout.fillWidth: true
                    look: tab.look
                    title: load.windowTitle
                    share: load.windowShare
                    percent: load.windowPercent
                    percentColor: load.windowPercentColor
                    tokens: load.windowTokens
                    fill: load.windowFill
                }
                LoadBar {
                    Layout.fillWidth: true
                    look: tab.look
                    title: load.weekTitle
                    share: load.weekShare
                    percent: load.weekPercent
                    percentColor: load.weekPercentColor
                    tokens: load.weekTokens
                    fill: load.weekFill
                }
            }
        }
    }
    PanelButton {
        look: tab.look
        symbol: "arrow.clockwise"
        symbolSize: 12
        text: monitor.reloadLabel
        onClicked: monitor.reload()
    }
    PanelCard {
        Layout.fillWidth: true
        look: tab.look
        spacing: 12

        Repeater {
            model: monitor.toggles

            delegate: ColumnLayout {
                id: setting

                required property int index
                required property string label
                required property string hint
                required property bool isOn

                Layout.fillWidth: true
                spacing: 3

                RowLayout {
                    Layout.fillWidth: true
                    spacing: 8

                    PanelLabel {
                        Layout.fillWidth: true
                        look: tab.look
                        size: 12
                        text: setting.label
                        wrapMode: Text.Wrap
                    }
                    PanelSwitch {
                        // A row that was once higher, while its words still wrapped, would leave a
                        // switch in its middle where that was.
                        Layout.alignment: Qt.AlignTop
                        look: tab.look
                        text: setting.label
                        on: setting.isOn
                        animated: tab.animated
                        onFlipped: on => monitor.setToggle(setting.index, on)
                        Accessible.description: setting.hint
                    }
                }
                PanelLabel {
                    Layout.fillWidth: true
                    Layout.rightMargin: 44
                    look: tab.look
                    size: 10
                    text: setting.hint
                    color: tab.look.text(tab.look.foam, 0.5)
                    wrapMode: Text.Wrap
                }
            }
        }
    }
}
