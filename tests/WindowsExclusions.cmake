# The tests that run on Linux but not in the Windows build (under Wine),
# each with its reason; nothing else is left out there.
#
# Whole programs, not built for Windows:
set(VELD_WINDOWS_EXCLUDED_PROGRAMS
  # The POSIX platform itself.
  posix_platform_test
  # The SQLite registry store as the registry of POSIX systems: its
  # conformance run and its multi-process tests, which fork helpers and kill
  # them (Windows has its own registry, which windows_registry_conformance_test
  # and kvo_registry_test exercise there).
  registry_conformance_test sqlite_registry_test registry_store_helper
  # Transforms compared with Debian's xsltproc program.
  xsltproc_conformance_test
  # Options files under veld processes killed with SIGKILL at random
  # instants.
  veld_options_safety_test
  # Streamed exports in a process killed with SIGKILL, on a tmpfs of a
  # private mount namespace, under a file-size limit.
  dataset_file_export_failure_test)
#
# Single tests, compiled out on Windows (#ifndef _WIN32) where they stand:
#   dataset_export_reference_test ProcessKilledInTheMiddleOfAnExport...,
#   table_store_conformance_test ProcessKilledDuringAnExport...: fork and
#     SIGKILL;
#   regional_settings_test ProcessLocaleTest.*, veld_cli_test
#     FormatFollowsLangWithoutLocale: the POSIX process locale (LANG,
#     LC_ALL, LC_TIME); windows_regional_test checks the user's locale of
#     Windows instead;
#   kvo_option_save_safety_test LinkPlantedAtTheBackupNameIsNotFollowed,
#     SaveThroughALinkedOptionFileReplacesItsTarget,
#     LinkThatLeadsNowhereIsRefusedWithPathNotFound,
#     SavedFileKeepsThePermissionsOfTheFileItReplaces: symbolic links (which
#     Wine cannot make, and Windows only with a privilege) and POSIX modes;
#   kvo_err_object_test DefaultMessageBoxWritesToStandardError: the POSIX
#     platform's message box; Windows shows a real one;
#   veld_cli_test ExportDrawsProgressOnATerminalOnly: a pseudo-terminal;
#   veld_cli_test OutputToAFullDisk..., OutputToAClosedStdout...,
#     CommandWithoutOutputIgnoresAClosedStdout, EndlessInputIsReadUpToALimit:
#     /dev/full, a closed descriptor 1, /dev/zero.
#   table_store_conformance_test OdbcSqlite backend and
#     DsnLessOdbcConnectionStringWorksWhenQuoted, dataset_export_test
#     OdbcDataSourceTakesUserAndPasswordAsArguments and
#     OdbcConnectionStringRefusesCredentialsItCannotCarry: the SQLite ODBC
#     driver, which Debian has for Linux only;
# Skipped under Wine only, where Wine differs from Windows (the registry
# facts record these):
#   kvo_registry_test ResultCodeWithoutEntryRecordsUnexpectedError and
#     ValuesXmlOnUnusableRootFailsAtFirstWrite (Wine treats HKEY_DYN_DATA as
#     writable), ReadThroughPerformanceDataFindsNoValue (Wine answers a
#     query of HKEY_PERFORMANCE_DATA with data).
# Where Wine enumerates registry values by name rather than in the order of
# creation, the tests expect Wine's order under Wine.
# Tests that are not test programs:
#   tablestore.postgresql: a PostgreSQL server, which only the Linux run
#     starts;
#   install.consumer: installs the library and builds a consumer with the
#     host's compiler.
