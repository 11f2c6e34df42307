# What zymcore/platform stands on. The same names are in ZymCoreConfig.cmake.in.
find_package(PkgConfig REQUIRED)
find_package(ICU REQUIRED COMPONENTS i18n uc)
find_package(RapidJSON REQUIRED)
pkg_check_modules(ZYM_GLIB REQUIRED IMPORTED_TARGET glib-2.0)
pkg_check_modules(ZYM_XML2 REQUIRED IMPORTED_TARGET libxml-2.0)
pkg_check_modules(ZYM_PIXBUF REQUIRED IMPORTED_TARGET gdk-pixbuf-2.0)
pkg_check_modules(ZYM_SQLITE REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(ZYM_ARCHIVE REQUIRED IMPORTED_TARGET libarchive)

set(ZYM_THIRD_PARTY ICU::i18n ICU::uc PkgConfig::ZYM_GLIB PkgConfig::ZYM_XML2 PkgConfig::ZYM_PIXBUF
                    PkgConfig::ZYM_SQLITE PkgConfig::ZYM_ARCHIVE)
