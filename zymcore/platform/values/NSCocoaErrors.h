#pragma once

#include <cstdint>

namespace zym {

// Codes of the errors in `NSCocoaErrorDomain`.

inline constexpr std::int64_t NSFileNoSuchFileError = 4;
inline constexpr std::int64_t NSFileReadUnknownError = 256;
inline constexpr std::int64_t NSFileReadNoPermissionError = 257;
inline constexpr std::int64_t NSFileReadCorruptFileError = 259;
inline constexpr std::int64_t NSFileReadNoSuchFileError = 260;
inline constexpr std::int64_t NSFileReadTooLargeError = 263;
inline constexpr std::int64_t NSFileWriteUnknownError = 512;
inline constexpr std::int64_t NSFileWriteNoPermissionError = 513;
inline constexpr std::int64_t NSFileWriteFileExistsError = 516;
inline constexpr std::int64_t NSFileWriteOutOfSpaceError = 640;

inline constexpr std::int64_t NSPropertyListReadCorruptError = 3840;
inline constexpr std::int64_t NSPropertyListWriteStreamError = 3851;
inline constexpr std::int64_t NSPropertyListWriteInvalidError = 3852;

/// The store is of a kind that isn't known, or the file is another program's.
inline constexpr std::int64_t NSPersistentStoreInvalidTypeError = 134000;
/// There is no store to work on.
inline constexpr std::int64_t NSPersistentStoreOperationError = 134070;
/// Somebody else held the store for longer than the patience for it.
inline constexpr std::int64_t NSPersistentStoreTimeoutError = 134090;
/// The store was made for another model, and migration wasn't asked for.
inline constexpr std::int64_t NSPersistentStoreIncompatibleVersionHashError = 134100;
/// The change from the store's model to this one can't be inferred.
inline constexpr std::int64_t NSInferredMappingModelError = 134190;
/// Somebody else saved or deleted an object that was to be saved.
inline constexpr std::int64_t NSManagedObjectMergeError = 133020;
/// The description of a model is no model.
inline constexpr std::int64_t NSManagedObjectModelInvalidError = 134060;

}  // namespace zym
