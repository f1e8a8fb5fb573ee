#pragma once

#include <QString>

/// The services and accounts under which the program keeps its secrets, once.
namespace morvo::SecretItems {

/// The login's tokens.
inline const QString authService = QStringLiteral("ai.zentaro.morvopet.auth");
inline const QString accessTokenAccount = QStringLiteral("access_token");
inline const QString refreshTokenAccount = QStringLiteral("refresh_token");
inline const QString idTokenAccount = QStringLiteral("id_token");

/// The user's own keys of language models; the account is the provider.
inline const QString languageModelService = QStringLiteral("ai.zentaro.morvobar.llm");

inline const QString dashScopeService = QStringLiteral("ai.zentaro.morvobar.dashscope");
inline const QString doubaoVoiceService = QStringLiteral("ai.zentaro.morvobar.doubao-voice");
inline const QString apiKeyAccount = QStringLiteral("api-key");

} // namespace morvo::SecretItems
