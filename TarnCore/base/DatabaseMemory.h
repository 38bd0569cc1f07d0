#pragma once

/// How SQLite gets its memory.
///
/// While FTS5 indexes, it keeps the postings of a transaction in a hash table of tens of megabytes,
/// and each word of a text is a visit to another place in it. More than half of the time of an
/// indexing run was spent on waiting for these. They lie in a BlockArena.
namespace tarn::DatabaseMemory {

/// Has effect once, and before SQLite is first used. Callable from any thread.
void install();

}  // namespace tarn::DatabaseMemory
