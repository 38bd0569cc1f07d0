#pragma once

/// How SQLite gets its memory.
///
/// While FTS5 indexes, it keeps the postings of a transaction in a hash table of tens of megabytes,
/// and each word of a text is a visit to another place in it. More than half of the time of an
/// indexing run was spent on waiting for these. They lie in a BlockArena.
namespace tarn::DatabaseMemory {

/// Has effect once, and before SQLite is first used. Callable from any thread.
void install();

/// For a program that is about to fill an index, for which four megabytes more are worth the time.
/// Callable from any thread.
void useLargePages();

}  // namespace tarn::DatabaseMemory
