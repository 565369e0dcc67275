# The real dependencies, all from Debian's packages (scripts/install-deps.sh).
find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Test WebEngineWidgets)
find_package(Boost 1.74 REQUIRED COMPONENTS thread system)
find_package(fmt 9 REQUIRED)
find_package(log4cxx REQUIRED)
find_package(Threads REQUIRED)
find_package(SQLite3 3.40 REQUIRED)

# The legacy MongoDB C++ driver ships no CMake package: headers under mongo/.
find_path(MONGO_INCLUDE_DIR mongo/bson/bson.h REQUIRED)
find_library(MONGO_CLIENT_LIBRARY mongoclient REQUIRED)
if(NOT TARGET optdesk_mongo)
  add_library(optdesk_mongo INTERFACE)
  target_include_directories(optdesk_mongo SYSTEM INTERFACE ${MONGO_INCLUDE_DIR})
  target_link_libraries(optdesk_mongo INTERFACE ${MONGO_CLIENT_LIBRARY} Boost::thread Boost::system)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
