find_package(PkgConfig REQUIRED)
find_package(ICU REQUIRED COMPONENTS i18n uc)
find_package(RapidJSON REQUIRED)
pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET glib-2.0)
pkg_check_modules(XML2 REQUIRED IMPORTED_TARGET libxml-2.0)
pkg_check_modules(PIXBUF REQUIRED IMPORTED_TARGET gdk-pixbuf-2.0)
pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET sqlite3)

set(ZYM_THIRD_PARTY ICU::i18n ICU::uc PkgConfig::GLIB PkgConfig::XML2 PkgConfig::PIXBUF PkgConfig::SQLITE)
