#pragma once

#include "till/database/database.h"

namespace queue {

/// The tables of the queue, and the words in which its statements differ between a file and a server:
///
/// | Word | Means |
/// |---|---|
/// | `@isRecovered` | whether the result in `detail` says that it was recovered |
/// | `@damage` | a statement that answers "ok" where the file is not damaged; a server looks after that
/// itself | | `@inOrder` | a statement before a result of the register `?` is appended: it is committed
/// before readers see a later one | | `@orderKnown` | a statement before results of the register `?` are
/// read: those that are being appended are committed | | `@unhurried` | a statement for a transaction that
/// may rest for long |
[[nodiscard]] till::DatabaseFormat formatOf(const QString& place);

} // namespace queue
