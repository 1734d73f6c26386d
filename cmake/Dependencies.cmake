# Every package is looked up here, so that its targets are visible in all folders.

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)
# The installed headers ask for the same one.
set(DIAGS_BOOST_VERSION 1.74)
find_package(Boost ${DIAGS_BOOST_VERSION} REQUIRED)
find_package(EXPAT REQUIRED)
find_package(spdlog REQUIRED)
find_package(CLI11 REQUIRED)
find_package(nlohmann_json 3.9 REQUIRED)
if(DIAGS_TESTS)
  find_package(GTest REQUIRED)
endif()
if(DIAGS_BENCH)
  find_package(benchmark REQUIRED)
endif()
