include("${CMAKE_CURRENT_LIST_DIR}/zrcommonTargets.cmake")
