#pragma once

/// Every text of the program: captions, messages and the words printed or exported.
///
/// The constants stand in the order of the rows of textTable, and their names are the Italian words. A text is never
/// looked up by those words, because several stand in the table twice. Mnu and Cmd tell the captions of menu entries
/// and buttons, which carry the "&" of an access key, from window titles of the same words. Colonna marks a word that
/// heads a grid column where a label of the same words exists, Etichetta a label that ends with a colon where its
/// word exists without one.
// clang-format off
enum class Text : int {
    InterfacciaMultiprotocollo, ImpostazionePortaSeriale, ListaUtenti, RicercaEventi, RicercaInCorso, UltimiEventi,
    InserimentoCodice, ModificaCodice, Diagnostica,

    ParametriDiRicerca, Ricerca, DallaData, AllaData, OraInizio, OraFine, NumeroUtenteEtichetta, Cognome, Nome, Giorno,
    ProtocolloDiComunicazione, CanaliAbilitati,

    MnuFile, MnuImpostazionePortaSeriale, MnuLetturaConfigurazioneInterfaccia, MnuDiagnostica, MnuEsci, MnuAnagrafica,
    MnuListaUtenti, MnuConsultazioni, MnuRicercaEventi, MnuStrumenti, MnuAllineamentoData, MnuUltimiEventi,

    CmdOk, CmdAnnulla, CmdSalva, CmdAggiornaUtenti, CmdChiudi, CmdRicerca,

    PasswordErrata, TuttiICambiamentiVerrannoAnnullati, Max15Caratteri, FormatoDataNonCorretto, FormatoOraNonCorretto,
    CodiceONominativoNonPresente, EliminareUtente, FilePasswordCorrotto, CodiceNonValido, NessunUtenteRegistrato,
    IlCodice, SelezionareUnCanale, SelezionareUnTipo, NessunEventoDisponibile,

    Fine, Attivato, Continuare, Password, PasswordRichiesta, TrasferimentoUtenti, TrasferimentoUtente,
    ElaborazioneUtenti, ElaborazioneUtente, Com, Baudrate, LinguaEtichetta,

    CmdProvaConnessione, SelezionareUnaPortaCom, AccertarsiInterfacciaCollegata, ConnessioneEffettuata,
    ImpossibileStabilireCollegamento, ConfigurazioneInterfaccia, PortaSerialeGiaAperta, PortaSerialeNonDisponibile,
    ConnessioneImpossibile, CmdRileggi,

    FormatoOraBreveNonCorretto, CodiceTastieraTroppoGrande, CodiceTroppoGrande, CodiceGiaEsistente, Radio, Tastiera,
    Codice, Tipo, NumeroUtente, CodiceColonna, Disabilitato, Abilitato, ChA, ChB, ChC, ChD,

    Canale, CognomeUtente, NomeUtente, InformazioniAggiuntive, Data, Ora, Ch, Canali, NumeroColonna, Utente, Nominativo,
    DataOra, Informazione,

    Utenti, CanaliEtichetta, TipoDiEvento, Tutti, SoloAbilitati, SoloDisabilitati, LetteraA, LetteraS,

    ImpostazioneSeriale, Domenica, Lunedi, Martedi, Mercoledi, Giovedi, Venerdi, Sabato,

    Gennaio, Febbraio, Marzo, Aprile, Maggio, Giugno, Luglio, Agosto, Settembre, Ottobre, Novembre, Dicembre,

    NonCollegato, ImpostazioniDiControlloKor, ControlloKorOgni, Minuti, ControlloAutomaticoKor, MinutiFuoriLimite,

    CmdStampa, SalvareICambiamenti, StampaInCorso, Pagina, MnuStampaUltimiEventi, StampaDegliUltimiEventi,
    UltimiEventiTitolo, StampaDegliUltimi, EventiDopoNumero, NessunEventoRegistrato,

    CmdRiconoscimentoTx, IlNumeroUtente, NonPresenteInAnagrafica, DataEOraAggiornate, AllineamentoDataEOra,
    TrasferimentoEvento, ElaborazioneEvento, DataDiPartenzaDopoArrivo,

    FileMancanteODanneggiato, PasswordInserimento, ErroreDigitazionePassword, InserimentoPasswordPrincipale,
    InserimentoPasswordUtenti, InserimentoPasswordDiagnostica, PasswordPrincipale, PasswordUtenti, PasswordDiagnostica,
    ScrivereEConfermarePassword, ConfermaPassword, MnuAbilitazionePasswordPrincipale,
    MnuDisabilitazionePasswordPrincipale, MnuAbilitazionePasswordUtenti, MnuDisabilitazionePasswordUtenti,
    MnuAbilitazionePasswordDiagnostica, MnuDisabilitazionePasswordDiagnostica,

    MnuNumeroEventiOdierni, NumeroEventiOdierni, NumeroEventi, NumeroEventiFuoriLimite, ImpostazioneStampante,
    Stampante, NessunaStampanteInstallata,

    Informazioni, Versione, MnuAiuto, MnuInformazioniSu, MnuLingua, MnuImpostaStampante, Lingua, ScegliLaLingua,

    CmdNuovo, CmdModifica, CmdElimina, Interfaccia, NessunEventoTrovato,

    CmdNuoviPrecodificati, NumeroTrasmettitori, CodiceDiPartenza, NuoviPrecodificati, InserireNumeroTrasmettitori,
    SuperatoNumeroMassimoDiCodici, NumeroTrasmettitoriMaggioreDiZero, NumeroCodiceMaggioreDiZero,
    NonTuttiICodiciAggiunti,

    CodiceTroncatoColonna, CaricamentoUtenti, CmdDoppioni, RicercaDoppioni, NessunDoppioneTrovato, ReportDoppioni,
    CodiceReale, CodiceTroncatoReport,

    InterfacciaNonCollegata, InterfacciaNonInLinea, InterfacciaInLinea, MnuImpostazioniDiControlloKor,
    MnuIstruzioniHardware731, MnuIstruzioniHardware752, MnuIstruzioniSoftware, NessunAcrobatReader, FileNonTrovato,

    MnuProgrammazioneSettimanale, CmdAggiungi, OraDiPartenzaDopoArrivo, EliminareFasciaOraria, EliminareIntervalloFerie,
    MnuProgrammazioneFerie, DalGiorno, AlGiorno, ChDis, KorDis,

    InformazioneDiCanale, Ponte, Pc, Si, No, CodiceDiSito,

    FasciaDa, FasciaA, Abilitata, Disabilitata, FasciaOrariaGiaPresente, IntervalloFerieGiaPresente,

    CmdEsportaInExcel, ImpossibileCreareFileExcel, CartellaDiLavoroExcel, IlFile, EsisteGia, EventiFoglio,
    EsportazioneInCorso, Record
};
// clang-format on

inline constexpr int TextCount = static_cast<int>(Text::Record) + 1;
