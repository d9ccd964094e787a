#pragma once

#include "link/InterfaceConfig.h"
#include "texts/Texts.h"

/// The interface's configuration in words.
struct ConfigFields {
    QString ProtCom;
    QString Enable;
    QString CanaliAb;
    QString InfCan;
    QString Ponte;
    QString Pc;
    QString J1;
    QString CodSito;
    QString Ver;
};

/// @param config  an answer; of one without a usable configuration line only protocol and version are told
ConfigFields configFields(const InterfaceConfig &config, const Texts &texts);
