# Installation on Windows and the Windows installer (NSIS through CPack): both programs with the
# Qt libraries windeployqt gathers for them, the icon, a Start-menu entry for the window and one
# for the user guide, the .rfd file type opening in Rainfold, and the example designs.
#
# WRITTEN FOR A WINDOWS BUILD WITH QT FROM THE QT INSTALLER AND NOT RUN ON THE DEBIAN MACHINES THAT
# TEST THE PROJECT. Elsewhere, -DRAINFOLD_WINDOWS_PACKAGE=ON reads these rules so that they are
# seen to configure, and `cmake --install` lays out the files (without Qt's libraries).
#
#   cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH=C:/Qt/6.8.3/msvc2022_64
#   cmake --build build
#   cpack --config build/CPackConfig.cmake          # build/Rainfold-<version>-win64.exe
#
# In C:\Program Files\Rainfold: bin\ holds the programs and Qt's libraries side by side (and
# goes on the PATH if the user agrees), share\rainfold\guide\ the user guide, where the window
# program looks for it, examples\ the example designs.

set(here ${CMAKE_CURRENT_LIST_DIR})
set(RAINFOLD_HOMEPAGE "https://rainfold.example.org" CACHE STRING "Project home page")
set(RAINFOLD_ICON ${here}/icons/rainfold.ico) # 16 to 256 pixels, made from the PNG icons

# The window program is a window-only program with the icon in its resources.
if(WIN32)
    set_target_properties(rainfold PROPERTIES WIN32_EXECUTABLE ON)
    file(WRITE ${CMAKE_BINARY_DIR}/packaging/rainfold.rc
         "IDI_ICON1 ICON \"${RAINFOLD_ICON}\"\n")
    target_sources(rainfold PRIVATE ${CMAKE_BINARY_DIR}/packaging/rainfold.rc)
    # Run from the build folder, the window program finds the guide beside it, as installed.
    add_custom_command(TARGET rainfold POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E copy_directory ${PROJECT_SOURCE_DIR}/docs/guide
                $<TARGET_FILE_DIR:rainfold>/guide)
endif()

install(TARGETS rainfold rainfold-cli RUNTIME DESTINATION bin)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/guide/ DESTINATION share/rainfold/guide)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/ DESTINATION examples
        FILES_MATCHING PATTERN "*.rfd" PATTERN "*.csv")
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION . RENAME LICENSE.txt)
install(FILES ${RAINFOLD_ICON} DESTINATION bin)

# Qt's libraries and plug-ins (platform, print support, image formats) beside the programs;
# rainfold-cli needs a subset of the window program's.
if(TARGET Qt6::windeployqt)
    get_target_property(RAINFOLD_WINDEPLOYQT Qt6::windeployqt IMPORTED_LOCATION)
else()
    find_program(RAINFOLD_WINDEPLOYQT windeployqt HINTS ${QT6_INSTALL_PREFIX}/bin)
endif()
if(RAINFOLD_WINDEPLOYQT)
    install(CODE "
        execute_process(
            COMMAND \"${RAINFOLD_WINDEPLOYQT}\" --release --no-translations --no-system-d3d-compiler
                    --no-opengl-sw --dir \"\${CMAKE_INSTALL_PREFIX}/bin\"
                    \"\${CMAKE_INSTALL_PREFIX}/bin/$<TARGET_FILE_NAME:rainfold>\"
                    \"\${CMAKE_INSTALL_PREFIX}/bin/$<TARGET_FILE_NAME:rainfold-cli>\"
            RESULT_VARIABLE deployed)
        if(NOT deployed EQUAL 0)
            message(FATAL_ERROR \"windeployqt failed: \${deployed}\")
        endif()")
else()
    message(STATUS "windeployqt not found: the installed programs will lack Qt's libraries")
endif()
# The C++ runtime of the compiler (MSVC's DLLs; a MinGW build's come with windeployqt).
set(CMAKE_INSTALL_SYSTEM_RUNTIME_DESTINATION bin)
include(InstallRequiredSystemLibraries)

# The installer.
set(CPACK_GENERATOR NSIS)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_NAME Rainfold)
set(CPACK_PACKAGE_VENDOR "The Rainfold developers")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Estimate the runoff of a center-pivot sprinkler design")
set(CPACK_PACKAGE_INSTALL_DIRECTORY Rainfold)
set(CPACK_PACKAGE_FILE_NAME Rainfold-${PROJECT_VERSION}-win64)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_EXECUTABLES rainfold Rainfold) # the Start-menu entry
set(CPACK_NSIS_MENU_LINKS "share\\rainfold\\guide\\index.html" "Rainfold User Guide")
set(CPACK_NSIS_DISPLAY_NAME Rainfold)
set(CPACK_NSIS_PACKAGE_NAME "Rainfold ${PROJECT_VERSION}")
set(CPACK_NSIS_MUI_ICON ${RAINFOLD_ICON})
set(CPACK_NSIS_MUI_UNIICON ${RAINFOLD_ICON})
set(CPACK_NSIS_INSTALLED_ICON_NAME "bin\\rainfold.exe")
set(CPACK_NSIS_URL_INFO_ABOUT ${RAINFOLD_HOMEPAGE})
set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
set(CPACK_NSIS_MODIFY_PATH ON) # offers rainfold-cli on the PATH

# The file type: .rfd files show the icon and open in Rainfold ("Rainfold design", as on Linux).
# The file manager is told at once; uninstalling removes the type if it is still Rainfold's.
set(CPACK_NSIS_EXTRA_INSTALL_COMMANDS [=[
  WriteRegStr SHCTX "Software\Classes\.rfd" "" "Rainfold.Design"
  WriteRegStr SHCTX "Software\Classes\Rainfold.Design" "" "Rainfold design"
  WriteRegStr SHCTX "Software\Classes\Rainfold.Design\DefaultIcon" "" "$INSTDIR\bin\rainfold.exe,0"
  WriteRegStr SHCTX "Software\Classes\Rainfold.Design\shell\open\command" "" '"$INSTDIR\bin\rainfold.exe" "%1"'
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
]=])
set(CPACK_NSIS_EXTRA_UNINSTALL_COMMANDS [=[
  ReadRegStr $0 SHCTX "Software\Classes\.rfd" ""
  StrCmp $0 "Rainfold.Design" 0 +2
    DeleteRegKey SHCTX "Software\Classes\.rfd"
  DeleteRegKey SHCTX "Software\Classes\Rainfold.Design"
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
]=])
include(CPack)
