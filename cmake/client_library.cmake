# Finds the MySQL client library and what its handle types are called.
#
# Gives the target corvane_client, and CORVANE_CLIENT_TAGS_DIR: empty when the forward declarations in the source tree
# are right (MariaDB's library), else an include folder that holds them with the other library's tags.
function(corvane_find_client_library)
  find_package(PkgConfig REQUIRED)
  pkg_search_module(CORVANE_CLIENT REQUIRED IMPORTED_TARGET mysqlclient libmariadb mariadb)
  add_library(corvane_client INTERFACE)
  target_link_libraries(corvane_client INTERFACE PkgConfig::CORVANE_CLIENT)

  include(CheckCXXSourceCompiles)
  set(CMAKE_REQUIRED_LIBRARIES PkgConfig::CORVANE_CLIENT)
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

# Writes the forward declarations with the tags MYSQL and MYSQL_RES, as MySQL's own client library has them.
function(corvane_write_client_tags directory)
  file(READ "${PROJECT_SOURCE_DIR}/corvane/session/mysql_fwd.h" declarations)
  string(REPLACE "st_mysql_res" "MYSQL_RES" declarations "${declarations}")
  string(REPLACE "st_mysql" "MYSQL" declarations "${declarations}")
  string(REPLACE "MariaDB's client library" "MySQL's client library" declarations "${declarations}")
  file(CONFIGURE OUTPUT "${directory}/corvane/session/mysql_fwd.h" CONTENT "${declarations}" @ONLY)
endfunction()
