#pragma once

#include <QString>

/// Every key of the settings store that is in use, once.
namespace morvo::SettingKeys {

inline const QString notifications = QStringLiteral("morvo.set.notifications");
inline const QString preciseEvents = QStringLiteral("morvo.set.preciseEvents");
inline const QString fleet = QStringLiteral("morvo.set.fleet");
inline const QString captureUsage = QStringLiteral("morvo.set.captureUsage");
inline const QString captureSeconds = QStringLiteral("morvo.set.captureSeconds");
inline const QString voice = QStringLiteral("morvo.set.voice");
inline const QString act = QStringLiteral("morvo.set.act");
inline const QString desktopPet = QStringLiteral("morvo.set.desktopPet");
inline const QString bubbleDwell = QStringLiteral("morvo.set.bubbleDwell");
inline const QString proactiveMinInterval = QStringLiteral("morvo.set.proactiveMinInterval");
inline const QString proactiveDedupWindow = QStringLiteral("morvo.set.proactiveDedupWindow");
inline const QString behaviorMode = QStringLiteral("morvo.set.behaviorMode");
inline const QString appearance = QStringLiteral("morvo.set.appearance");
inline const QString themeColor = QStringLiteral("morvo.set.themeColor");
inline const QString fontScale = QStringLiteral("morvo.set.fontScale");
inline const QString petOpacity = QStringLiteral("morvo.set.petOpacity");
inline const QString petScale = QStringLiteral("morvo.pet.scale");
inline const QString doneCount = QStringLiteral("morvo.done.count");
inline const QString doneDate = QStringLiteral("morvo.done.date");
inline const QString growthXp = QStringLiteral("morvo.growth.xp");
inline const QString growthStreak = QStringLiteral("morvo.growth.streak");
inline const QString growthLastActiveDay = QStringLiteral("morvo.growth.lastActiveDay");
inline const QString growthWiped = QStringLiteral("morvo.growth.wiped.v2");
inline const QString carePetCount = QStringLiteral("morvo.care.petCount");
inline const QString careFeedCount = QStringLiteral("morvo.care.feedCount");
inline const QString careChatCount = QStringLiteral("morvo.care.chatCount");
inline const QString careLastAt = QStringLiteral("morvo.care.lastAt");
/// Followed by the milestone's number.
inline const QString careMilestonePrefix = QStringLiteral("morvo.care.milestone.");
inline const QString personaSelectedId = QStringLiteral("morvo.persona.selectedId");
inline const QString personaCustoms = QStringLiteral("morvo.persona.customs");
inline const QString personaCustomLegacy = QStringLiteral("morvo.persona.custom");
inline const QString usageBlockPeaks = QStringLiteral("morvo.usage.blockPeaks");
inline const QString usageCurBlockBucket = QStringLiteral("morvo.usage.curBlockBucket");
inline const QString usageCurBlockPeak = QStringLiteral("morvo.usage.curBlockPeak");
inline const QString usageWeekPeaks = QStringLiteral("morvo.usage.weekPeaks");
inline const QString usageCurWeekBucket = QStringLiteral("morvo.usage.curWeekBucket");
inline const QString usageCurWeekPeak = QStringLiteral("morvo.usage.curWeekPeak");

} // namespace morvo::SettingKeys
