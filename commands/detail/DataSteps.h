// Steps that the commands on a project's data share.
#pragma once

#include "commands/Command.h"

#include <json/value.h>
#include <QString>
#include <exception>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kvn::detail {

/// A text that must be there. @throws Json::LogicError "in Json::Value::asCString(): requires stringValue".
std::string requiredText(Json::Value const& value);

/// The ids of an array of texts; none when the value is null. All are read before the caller changes anything.
/// @throws Json::LogicError of the JSON library for a value of another kind, and for an element that is no text.
std::set<std::string> idsOf(Json::Value const& ids);

/// Integer, unsigned or real; a boolean and a text with digits are no numbers.
bool isNumber(Json::Value const& value);

// A value of another type than that of the field leaves the field as it is.
void apply(Json::Value const& value, std::string& field);
void apply(Json::Value const& value, double& field);
void apply(Json::Value const& value, bool& field);

/// Takes the records that match out of the list and returns them, in one pass: each record is asked for once, from the
/// first to the last, and those before the first match stay where they are. Both lists keep the order.
template <typename Record, typename Predicate>
std::vector<Record> takeOut(std::vector<Record>& list, Predicate const& matches) {
  std::vector<Record> taken;
  auto kept = list.begin();
  for (auto record = list.begin(); record != list.end(); ++record) {
    if (matches(*record)) {
      taken.push_back(std::move(*record));
    } else {
      if (kept != record) *kept = std::move(*record);
      ++kept;
    }
  }
  list.erase(kept, list.end());
  return taken;
}

/// Text of the std::exception that the call throws; nothing when it comes to its end. Want of memory is passed on: it
/// says nothing about the data.
template <typename Call>
std::optional<QString> failureOf(Call const& call) {
  try {
    call();
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const& failure) {
    return QString::fromUtf8(failure.what());
  }
  return std::nullopt;
}

/// Takes everything off the map and draws it again. @throws QLogicError "User Cancel".
void redrawMap(Project& project);

/// Draws the coordinate points again and frames the map. @throws QLogicError "User Cancel", before the framing.
void redrawCoordinates(Project& project);

/// Deselects everything, reads the file of {"data": {"file"}} into the project and marks it modified.
/// @throws QLogicError of a missing project or map scene; what the import throws, the project not being marked then.
void switchData(Command const& command, Json::Value const& in, void (Project::*import)(QString const&));

}  // namespace kvn::detail
