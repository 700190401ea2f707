#pragma once
// What a file is, by its name.

#include <QString>

bool IsProjectFile(const QString& sPath);  // *.vdebug
bool IsSourceFile(const QString& sPath);
bool IsDataFile(const QString& sPath);
bool IsHexFile(const QString& sPath);  // S-record and Intel HEX
bool IsSvdFile(const QString& sPath);
bool IsDocFile(const QString& sPath);
bool IsPluginFile(const QString& sPath);
bool IsBinFile(const QString& sPath);
// By suffix; a file without one is an ELF file if it begins as one.
bool IsElfFile(const QString& sPath);

// Filters of the file dialogs.
QString OpenDialogFilter();
QString LoadDialogFilter();
QString ProjectDialogFilter();

// What a file of that suffix is called, such as "C Source File"; empty for others.
QString FileTypeName(const QString& sPath);
