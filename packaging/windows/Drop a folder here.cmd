@echo off
rem SPDX-License-Identifier: MIT
rem
rem Drop folders, or single RAW files, of a Leica M8 on this file. Each picture's DNG appears beside its RAW file, with
rem a small preview in it. A DNG that is already there stays as it is. Sub-folders are not searched.
rem
rem To have it another way, set these variables, here or in Windows:
rem   VELMARCON_OPTIONS    the options of velmarcon (README.txt lists them); -p when it is not set.
rem                        For DNGs elsewhere:  set VELMARCON_OPTIONS=-p -o "D:\Pictures\DNG"
rem   VELMARCON_NO_PAUSE   1: end at once, do not wait for a key.
rem
rem Started with names, as  "Drop a folder here.cmd" D:\DCIM\100LEICA  it does the same, and ends with the status of
rem the last one that velmarcon could not work on, or 0.
setlocal DisableDelayedExpansion
if not defined VELMARCON_OPTIONS set "VELMARCON_OPTIONS=-p"
set "program=%~dp0velmarcon.exe"
set "status=0"
if not exist "%program%" goto no_program

rem Explorer does not quote a dropped name without spaces, and what stands behind an & in it is then not among the
rem arguments. It is in the command line of this cmd, which is taken apart instead.
setlocal EnableDelayedExpansion
set "line=!cmdcmdline!"
if not defined line goto arguments
if "!line:&=!"=="!line!" goto arguments
if "!line:%~nx0=!"=="!line!" goto arguments
set "line=!line:*%~nx0=!"
set "line=!line:~1,-1!"
for %%G in (!line!) do (
  setlocal DisableDelayedExpansion
  set "item=%%~G"
  call :convert
  if errorlevel 1 (endlocal & set "status=1") else endlocal
)
rem Not /b: the command line goes on behind the &, with a name that is no command.
call :finish
exit !status!

:arguments
endlocal
if "%~1"=="" goto no_names
:next
set "item=%~1"
call :convert
if errorlevel 1 set "status=%errorlevel%"
shift
if not "%~1"=="" goto next
call :finish
exit /b %status%

rem convert: convert what stands at %item%.
:convert
rem A drive is dropped as D:\ and the last character would take the quote behind it with it.
if "%item:~-1%"=="\" set "item=%item%."
echo.
echo === "%item%"
"%program%" -i "%item%" %VELMARCON_OPTIONS%
if "%errorlevel%"=="0" exit /b 0
if errorlevel 1 exit /b %errorlevel%
rem Windows ended it: the number is negative.
exit /b 1

:finish
echo.
if "%status%"=="0" echo Finished. What was wrong with a picture, if anything, stands above.
if not "%status%"=="0" echo Not all could be converted: see the lines with Error above.
:wait
if not "%VELMARCON_NO_PAUSE%"=="1" pause
exit /b 0

:no_names
echo Drop folders or RAW files of a Leica M8 on this file: their DNGs appear beside them.
set "status=1"
call :wait
exit /b %status%

:no_program
echo velmarcon.exe is not in the folder of this file. Unpack the whole zip file first.
set "status=1"
call :wait
exit /b %status%
