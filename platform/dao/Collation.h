#pragma once

#include <QStringView>

struct sqlite3;

namespace dao {

/** The text order of the database: case does not count, accents do; punctuation, then digits, then letters.
    Depends on nothing but the two texts, so that an index in a file stays good on every machine. */
int compareText(QStringView a, QStringView b);

/** Name of the collation in SQLite. */
inline constexpr char kCollation[] = "JET";

void registerCollation(sqlite3 *db);

} // namespace dao
