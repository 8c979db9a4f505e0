# Run by CTest (not CMake) after the tests of tovTests were discovered:
# tovTests_TESTS lists them, and TOV_TEST_LABEL_<label> lists the suites
# ("Suite") and single tests ("Suite.Test") that carry the label. See
# Tests/CMakeLists.txt for what each label means.
set(tovLabelsOfTest)
foreach(label threads stress)
  foreach(entry IN LISTS TOV_TEST_LABEL_${label})
    set(matched FALSE)
    foreach(test IN LISTS tovTests_TESTS)
      string(FIND "${test}" "${entry}." position)
      if(test STREQUAL entry OR position EQUAL 0)
        set(matched TRUE)
        list(APPEND "tovLabelsOfTest_${test}" ${label})
        list(APPEND tovLabelsOfTest "${test}")
      endif()
    endforeach()
    # Else a renamed suite would silently leave the sanitizer pass.
    if(NOT matched AND tovTests_TESTS)
      message(FATAL_ERROR "Tests/CMakeLists.txt gives the label ${label} to ${entry}, which names no test")
    endif()
  endforeach()
endforeach()

list(REMOVE_DUPLICATES tovLabelsOfTest)
foreach(test IN LISTS tovLabelsOfTest)
  set_tests_properties("${test}" PROPERTIES LABELS "${tovLabelsOfTest_${test}}")
endforeach()

# Resource locks: TOV_TEST_LOCK_<resource> lists the suites and tests that take the resource
# (port1981: the trace stream's port on loopback), which CTest then runs one at a time.
foreach(resource port1981)
  foreach(entry IN LISTS TOV_TEST_LOCK_${resource})
    foreach(test IN LISTS tovTests_TESTS)
      string(FIND "${test}" "${entry}." position)
      if(test STREQUAL entry OR position EQUAL 0)
        set_tests_properties("${test}" PROPERTIES RESOURCE_LOCK ${resource})
      endif()
    endforeach()
  endforeach()
endforeach()
