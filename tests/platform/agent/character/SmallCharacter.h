#pragma once

#include "platform/agent/Agent.h"
#include "platform/agent/character/CharacterFile.h"
#include "platform/agent/character/CharacterFormat.h"

#include <functional>
#include <optional>

/** A valid character of three parts: a red box that carries a blue one, and a mouth. */
agent::CharacterSource smallCharacter();
std::shared_ptr<const agent::CharacterFile> loaded(const agent::CharacterSource &source);

/** What reading is refused with; nothing when it is not. */
std::optional<agent::Error> refusal(const std::function<void()> &read);
std::optional<agent::Error> refusalOf(const QByteArray &bytes);
/** A file with a right check sum around a payload that may be anything. */
QByteArray enveloped(const QByteArray &payload);

/** Sets a value deep in an object: "animations/Wave/duration". */
QJsonObject changed(QJsonObject object, const QString &path, const QJsonValue &value);
