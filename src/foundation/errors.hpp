#pragma once

namespace varnoth {

/// Root of the system's failures. The class is the kind of failure. Before it throws, code writes
/// the details (key, file, value) to the log; ERROR_NO_MEMORY comes without a line.
///
///     try {
///       pool.Read("prf", prf);
///     } catch (const ERROR_EXCEPTION& error) {
///       std::puts(error.what());
///     }
///
/// Low-level classes throw a plain `const char*` text, outside this tree, if an invariant breaks.
class ERROR_EXCEPTION {
 public:
  ERROR_EXCEPTION() = default;
  ERROR_EXCEPTION(const ERROR_EXCEPTION&) = default;
  ERROR_EXCEPTION& operator=(const ERROR_EXCEPTION&) = default;
  virtual ~ERROR_EXCEPTION() = default;
  /// The text of the most derived class; never fails.
  virtual const char* what() const noexcept { return "error occurred"; }
};

/// A kind of failure: its class and its fixed text.
#define VARNOTH_ERROR(NAME, BASE, TEXT)                         \
  class NAME : public BASE {                                    \
   public:                                                      \
    const char* what() const noexcept override { return TEXT; } \
  }

VARNOTH_ERROR(ERROR_MEMORY, ERROR_EXCEPTION, "allocation error");
VARNOTH_ERROR(ERROR_NO_MEMORY, ERROR_MEMORY, "not enough memory");

VARNOTH_ERROR(ERROR_I_O, ERROR_EXCEPTION, "I/O error");
VARNOTH_ERROR(ERROR_NO_DISK_SPACE, ERROR_I_O, "not enough disk space");
VARNOTH_ERROR(ERROR_CAN_NOT_MMAP, ERROR_I_O, "mmap failed");
VARNOTH_ERROR(ERROR_CAN_NOT_MSYNC, ERROR_I_O, "msync failed");
VARNOTH_ERROR(ERROR_CAN_NOT_CREATE_FILE, ERROR_I_O, "can not create file");
VARNOTH_ERROR(ERROR_CAN_NOT_OPEN_FILE, ERROR_I_O, "can not open file");
VARNOTH_ERROR(ERROR_CAN_NOT_WRITE_FILE, ERROR_I_O, "can not write into file");
VARNOTH_ERROR(ERROR_CAN_NOT_READ_FILE, ERROR_I_O, "can not read from file");
VARNOTH_ERROR(ERROR_CAN_NOT_LSEEK_FILE, ERROR_I_O, "can not lseek in file");

VARNOTH_ERROR(ERROR_PROCESSING, ERROR_EXCEPTION, "processing error");
VARNOTH_ERROR(ERROR_ALGORITHM, ERROR_PROCESSING, "algorithm error");
VARNOTH_ERROR(ERROR_NOT_IMPLEMENTED, ERROR_ALGORITHM, "fct or algorithm not implemented");
VARNOTH_ERROR(ERROR_UNHANDLED_CASE, ERROR_ALGORITHM, "case not handled in if or switch block");
VARNOTH_ERROR(ERROR_ARGUMENT, ERROR_PROCESSING, "wrong argument");
VARNOTH_ERROR(ERROR_INVALID_VALUE, ERROR_PROCESSING, "invalid value");

VARNOTH_ERROR(ERROR_DATA, ERROR_EXCEPTION, "data error");
VARNOTH_ERROR(ERROR_PARAMETER, ERROR_DATA, "parameter error");
VARNOTH_ERROR(ERROR_IMAGE, ERROR_DATA, "image data error");
VARNOTH_ERROR(ERROR_NOT_SUPPORTED_PIXEL_TYPE, ERROR_DATA, "not supported pixel type");

VARNOTH_ERROR(ERROR_PARAMETER_POOL, ERROR_EXCEPTION, "parameter pool error");
VARNOTH_ERROR(PARAMETER_KEY_NOT_FOUND, ERROR_PARAMETER_POOL, "pool error - key not found");
VARNOTH_ERROR(PARAMETER_KEY_EXISTS, ERROR_PARAMETER_POOL, "pool error - key already exists");
VARNOTH_ERROR(PARAMETER_KEY_TOO_LONG, ERROR_PARAMETER_POOL, "pool error - key too long");
VARNOTH_ERROR(CAN_NOT_OPEN_POOL, ERROR_PARAMETER_POOL, "pool error - can not open parameter pool");
VARNOTH_ERROR(NO_UPDATE_PERMISSION_FOR_POOL, ERROR_PARAMETER_POOL,
              "pool error - parameter pool update(): insufficient file permission");
VARNOTH_ERROR(CAN_NOT_RENAME_POOL, ERROR_PARAMETER_POOL,
              "pool error - Update() : can not rename parameter file");
VARNOTH_ERROR(PARAMETER_OUT_OF_BOUNDS, ERROR_PARAMETER_POOL,
              "pool error - parameter value out of bounds");
VARNOTH_ERROR(WRONG_PARAMETER_TYPE, ERROR_PARAMETER_POOL, "pool error - wrong parameter type");
VARNOTH_ERROR(INVALID_PARAMETER_VALUE, ERROR_PARAMETER_POOL,
              "pool error - no or invalid parameter value in file");
VARNOTH_ERROR(CORRUPTED_PARAMETER_POOL, ERROR_PARAMETER_POOL,
              "pool error - corrupted parameter pool file");

}  // namespace varnoth
