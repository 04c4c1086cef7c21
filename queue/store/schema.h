#pragma once

#include "till/database/database.h"

namespace queue {

/// The tables of the queue, and the words of its statements. Most differ between a file and a server:
///
/// - `@waits`: whether a worker may take a receipt, unless it is held
/// - `@isRecovered`: whether the result in `detail` says that it was recovered
/// - `@damage`: answers "ok" where the file is not damaged; a server looks after that itself
/// - `@inOrder`: before a result of the register `?` is appended, which is then committed before readers see
///   a later one
/// - `@orderKnown`: before results of the register `?` are read; those being appended are committed
/// - `@unhurried`: for a transaction that may rest for long
[[nodiscard]] till::DatabaseFormat formatOf(const QString& place);

} // namespace queue
