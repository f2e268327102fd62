# Finds the MySQL client library and what its handle types are called.
#
# Gives the target corvane_client, and CORVANE_CLIENT_TAGS_DIR: empty when the forward declarations in the source tree
# are right (MariaDB's library), else an include folder that holds them with the other library's tags.
function(corvane_find_client_library)
  find_package(PkgConfig QUIET)
  if(NOT PkgConfig_FOUND)
    message(FATAL_ERROR "Corvane needs pkg-config, to find the MySQL client library with.\n"
      "  Debian, Ubuntu:  apt-get install pkg-config")
  endif()
  pkg_search_module(CORVANE_CLIENT QUIET IMPORTED_TARGET mysqlclient libmariadb mariadb)
  if(NOT CORVANE_CLIENT_FOUND)
    corvane_refuse_client("pkg-config knows of none, neither as mysqlclient nor as libmariadb or mariadb")
  endif()
  add_library(corvane_client INTERFACE)
  target_link_libraries(corvane_client INTERFACE PkgConfig::CORVANE_CLIENT)

  include(CheckCXXSourceCompiles)
  set(CMAKE_REQUIRED_LIBRARIES PkgConfig::CORVANE_CLIENT)
  corvane_check_client()
  check_cxx_source_compiles("
    #include <mysql.h>
    struct st_mysql; struct st_mysql_res;
    MYSQL* handle(st_mysql* h) { return h; }
    MYSQL_RES* result(st_mysql_res* r) { return r; }
    int main() { return handle(nullptr) != nullptr || result(nullptr) != nullptr; }"
    CORVANE_CLIENT_IS_MARIADB)

  if(CORVANE_CLIENT_IS_MARIADB)
    set(CORVANE_CLIENT_TAGS_DIR "" PARENT_SCOPE)
  else()
    corvane_write_client_tags("${PROJECT_BINARY_DIR}/client_tags")
    set(CORVANE_CLIENT_TAGS_DIR "${PROJECT_BINARY_DIR}/client_tags" PARENT_SCOPE)
  endif()
endfunction()

# Whether the library that was found serves: what was added to it last, of all that the sources use, are the options
# for TLS, and they differ between the two.
macro(corvane_check_client)
  check_cxx_source_compiles("
    #include <mysql.h>
    #ifdef LIBMARIADB
    mysql_option const tls[] = {MYSQL_OPT_SSL_ENFORCE, MYSQL_OPT_SSL_VERIFY_SERVER_CERT};
    #else
    mysql_option const tls[] = {MYSQL_OPT_SSL_MODE};
    unsigned const modes[] = {SSL_MODE_PREFERRED, SSL_MODE_VERIFY_IDENTITY};
    #endif
    int main() {
      MYSQL* const handle = mysql_init(nullptr);
      mysql_options(handle, MYSQL_OPT_READ_TIMEOUT, tls);
      return mysql_library_init(0, nullptr, nullptr) + mysql_next_result(handle);
    }"
    CORVANE_CLIENT_SERVES)
  if(NOT CORVANE_CLIENT_SERVES)
    unset(CORVANE_CLIENT_SERVES CACHE)  # asked again next time
    try_compile(CORVANE_CLIENT_HEADER SOURCE_FROM_CONTENT header.cpp "#include <mysql.h>\nint main() {}\n"
      LINK_LIBRARIES PkgConfig::CORVANE_CLIENT)
    set(CORVANE_CLIENT_SEEN
      "pkg-config found ${CORVANE_CLIENT_MODULE_NAME} ${CORVANE_CLIENT_VERSION} in ${CORVANE_CLIENT_PREFIX}, which is")
    if(CORVANE_CLIENT_HEADER)
      corvane_refuse_client("${CORVANE_CLIENT_SEEN} too old, or not whole: its header lacks functions or the options for TLS, or its library cannot be linked")
    else()
      corvane_refuse_client("${CORVANE_CLIENT_SEEN} not whole: with its options mysql.h cannot be included, or its library not linked")
    endif()
  endif()
endmacro()

function(corvane_refuse_client why)
  unset(__pkg_config_checked_CORVANE_CLIENT CACHE)  # looked for again next time
  message(FATAL_ERROR "Corvane needs a MySQL client library with its headers: MariaDB Connector/C 3 or later, or "
    "libmysqlclient 5.7 or later; ${why}.\n"
    "  Debian, Ubuntu:  apt-get install default-libmysqlclient-dev\n"
    "  Fedora:          dnf install mariadb-connector-c-devel\n"
    "  one of your own: PKG_CONFIG_PATH=FOLDER-OF-ITS-PC-FILE cmake ...")
endfunction()

# Writes the forward declarations with the tags MYSQL and MYSQL_RES, as MySQL's own client library has them.
function(corvane_write_client_tags directory)
  file(READ "${PROJECT_SOURCE_DIR}/corvane/session/mysql_fwd.h" declarations)
  string(REPLACE "st_mysql_res" "MYSQL_RES" declarations "${declarations}")
  string(REPLACE "st_mysql" "MYSQL" declarations "${declarations}")
  string(REPLACE "MariaDB's client library" "MySQL's client library" declarations "${declarations}")
  file(CONFIGURE OUTPUT "${directory}/corvane/session/mysql_fwd.h" CONTENT "${declarations}" @ONLY)
endfunction()
