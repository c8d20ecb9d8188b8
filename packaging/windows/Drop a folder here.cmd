@echo off
rem SPDX-License-Identifier: MIT
rem
rem Drop folders, or the files of single pictures, of a Leica M8 on this file. Folders are searched with all folders in
rem them. Each picture's DNG appears next to its RAW file, with the black level in it, and is compared with the RAW file.
rem Existing DNGs stay as they are. The last line counts the pictures.
rem
rem To change this, set these variables, here or in Windows:
rem   VELMARCON_OPTIONS        the options of velmarcon (README.txt lists them); default -b.
rem   VELMARCON_BATCH_OPTIONS  the options of velmarcon-batch, such as -o "D:\Pictures\DNG" for DNGs elsewhere;
rem                            velmarcon-batch.exe --help lists them.
rem   VELMARCON_NO_PAUSE       1: end at once, without waiting for a key.
rem
rem Started with names, as in  "Drop a folder here.cmd" D:\DCIM\100LEICA  it does the same, and exits with the status
rem of velmarcon-batch, or with 2 if one of the names does not exist. In a command prompt, or in another .cmd file, put
rem names with spaces or any of  & , ; = ^ ( )  in quotes, because cmd splits them there.
rem
rem Some dropped names cannot work: for a name like  R&&&D  or  R&(D  (no space, and an & that makes no valid command
rem line) Windows does not even start this file: rename the folder. Nor does it for more than 8000 characters of names.
setlocal DisableDelayedExpansion
if not defined VELMARCON_OPTIONS set "VELMARCON_OPTIONS=-b"
set "program=%~dp0velmarcon-batch.exe"
set "status=0"
set "all="
if not exist "%program%" goto no_program

rem Explorer does not quote a dropped name without spaces. A name with , ; or = arrives split into several arguments,
rem and anything after an & does not arrive. So the names are taken from the command line of this cmd, which is
rem   cmd.exe /c ""D:\velmarcon\Drop a folder here.cmd" D:\a,b "D:\one day" "
rem and split only at its quotes, and at spaces outside them. First each quote becomes a * , which no name contains:
rem in new quotes the line is then harmless, whatever the names are.
rem wine 8 has no cmdcmdline, and leaves a part of this text.
if not "%cmdcmdline:~0,0%"=="" goto arguments
set "line=%cmdcmdline:"=*%"
rem The line may be long, so it must not occur twice in one line of this file: cmd reads at most 8191 characters.
rem Names contain no redirections or pipes: if there are any, someone typed this line. Without them "eol=|" skips none.
set "rest="
for /f "eol=| tokens=1* delims=<>|" %%G in ("%line%") do set "rest=%%H"
if defined rest goto arguments
set "started=%line:*/c **=%"
set "file="
set "line="
for /f "eol=| tokens=1* delims=*" %%G in ("%started%") do (
  set "file=%%~fG"
  set "line=%%H"
)
rem If another file was started and has called this one, the names are its arguments.
if /i not "%file%"=="%~f0" goto arguments
if not defined line goto no_names
if not "%line:~-1%"=="*" goto arguments
set "line=%line:~0,-1%"
set "any="
:next_dropped
if not defined line goto all_dropped
if "%line:~0,1%"==" " (
  set "line=%line:~1%"
  goto next_dropped
)
set "end= "
if "%line:~0,1%"=="*" set "end=*"
set "item="
set "rest="
for /f "eol=| tokens=1* delims=%end%" %%G in ("%line%") do (
  set "item=%%G"
  set "rest=%%H"
)
set "line=%rest%"
if not defined item goto next_dropped
set "any=yes"
call :take
goto next_dropped
:all_dropped
if not defined any goto no_names
call :convert
call :finish
rem Not /b: the command line continues after an & with the rest of a name, which is not a command.
exit %status%

:arguments
if "%~1"=="" goto no_names
:next
set "item=%~1"
call :take
shift
if not "%~1"=="" goto next
call :convert
call :finish
exit /b %status%

rem take: add %item% to the names in %all%, each of which is in quotes.
:take
echo === "%item%"
if exist "%item%" goto exists
echo There is no such file or folder.
set "status=2"
exit /b 0
:exists
rem A drive is dropped as D:\ and its last character would escape the quote after it.
if "%item:~-1%"=="\" set "item=%item%."
rem Quotes around all of it would end at the first quote in it.
set all=%all% "%item%"
exit /b 0

rem convert: convert the pictures in %all%.
:convert
if not defined all exit /b 0
echo.
"%program%"%all% %VELMARCON_BATCH_OPTIONS% -- %VELMARCON_OPTIONS%
if "%errorlevel%"=="0" exit /b 0
if errorlevel 1 set "status=%errorlevel%"
rem A negative number means that Windows ended the program.
if not errorlevel 1 set "status=1"
exit /b 0

:finish
echo.
if "%status%"=="0" echo Finished. Every picture has its DNG.
if not "%status%"=="0" echo Not everything could be converted: see the lines above.
:wait
if not "%VELMARCON_NO_PAUSE%"=="1" pause
exit /b 0

:no_names
echo Drop folders or pictures of a Leica M8 on this file: their DNGs appear next to them.
set "status=1"
call :wait
exit /b %status%

:no_program
echo velmarcon-batch.exe is not in the folder of this file. Unpack the whole zip file first.
set "status=1"
call :wait
exit /b %status%
