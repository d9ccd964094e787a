#include "texts/OwnTextTable.h"

// clang-format off
const std::array<TextRow, OwnTextCount> ownTextTable = {{
    /* FolderMissing */
    {"La cartella del programma '%1' non esiste.",
     "The program folder '%1' does not exist.",
     "Le dossier du programme '%1' n'existe pas.",
     "Der Programmordner '%1' ist nicht vorhanden."},
    /* FolderNotWritable */
    {"Nella cartella '%1' non si può scrivere.",
     "The folder '%1' cannot be written to.",
     "Il n'est pas possible d'écrire dans le dossier '%1'.",
     "In den Ordner '%1' kann nicht geschrieben werden."},
    /* FolderInUse */
    {"La cartella '%1' è già usata da un altro programma di supervisione.",
     "The folder '%1' is already used by another supervising program.",
     "Le dossier '%1' est déjà utilisé par un autre programme de supervision.",
     "Der Ordner '%1' wird schon von einem anderen Überwachungsprogramm benutzt."},
    /* ArchiviMissing */
    {"Manca la cartella degli archivi '%1'.",
     "The archive folder '%1' is missing.",
     "Le dossier des archives '%1' est absent.",
     "Der Archivordner '%1' fehlt."},
    /* TemplateMissing */
    {"Manca il modello d'archivio '%1'.",
     "The archive template '%1' is missing.",
     "Le modèle d'archive '%1' est absent.",
     "Die Archivvorlage '%1' fehlt."},
    /* FolderCannotBePrepared */
    {"Impossibile preparare la cartella del programma ('%1')",
     "The program folder cannot be prepared ('%1')",
     "Impossible de préparer le dossier du programme ('%1')",
     "Der Programmordner kann nicht vorbereitet werden ('%1')"},
    /* SettingUnusable */
    {"L'impostazione '%1' manca o non è valida: si prosegue con '%2'.",
     "The setting '%1' is missing or not valid: going on with '%2'.",
     "Le réglage '%1' est absent ou non valable: on continue avec '%2'.",
     "Die Einstellung '%1' fehlt oder ist ungültig: weiter mit '%2'."},
    /* SettingNotSaved */
    {"Impossibile salvare l'impostazione '%1'",
     "The setting '%1' cannot be saved",
     "Impossible de sauvegarder le réglage '%1'",
     "Die Einstellung '%1' kann nicht gespeichert werden"},
    /* NoPortChosen */
    {"Nessuna porta seriale scelta (COM=0).",
     "No serial port is chosen (COM=0).",
     "Aucun port sériel choisi (COM=0).",
     "Kein serieller Anschluss gewählt (COM=0)."},
    /* PortLost */
    {"La porta seriale COM%1 è stata scollegata o non risponde più.",
     "The serial port COM%1 was unplugged or no longer answers.",
     "Le port sériel COM%1 a été débranché ou ne répond plus.",
     "Der serielle Anschluss COM%1 wurde abgezogen oder antwortet nicht mehr."},
    /* EventsWait */
    {"Gli eventi attendono, perché non possono essere memorizzati nell'archivio del loro giorno",
     "Events wait, as they cannot be stored in the archive of their day",
     "Les évènements attendent, car ils ne peuvent pas être mémorisés dans l'archive de leur jour",
     "Ereignisse warten, weil sie nicht im Archiv ihres Tages gespeichert werden können"},
    /* EventsStoredAgain */
    {"Gli eventi in attesa (%1) sono stati memorizzati.",
     "The events that waited (%1) have been stored.",
     "Les évènements en attente (%1) ont été mémorisés.",
     "Die wartenden Ereignisse (%1) wurden gespeichert."},
    /* EventsLost */
    {"Eventi perduti: %1",
     "Events lost: %1",
     "Évènements perdus: %1",
     "Verlorene Ereignisse: %1"},
    /* DayArchiveUnavailable */
    {"Impossibile aprire l'archivio eventi '%1'",
     "The event archive '%1' cannot be opened",
     "Impossible d'ouvrir l'archive des évènements '%1'",
     "Das Ereignisarchiv '%1' kann nicht geöffnet werden"},
    /* DayArchiveSetAside */
    {"L'archivio eventi '%1' era danneggiato: è stato messo da parte come '%2' e ne è stato creato uno nuovo.",
     "The event archive '%1' was damaged: it has been set aside as '%2' and a new one has been made.",
     "L'archive des évènements '%1' était endommagée: elle a été mise de côté sous '%2' et une nouvelle a été créée.",
     "Das Ereignisarchiv '%1' war beschädigt: es wurde als '%2' beiseite gelegt und ein neues angelegt."},
    /* UsersUnreadable */
    {"Impossibile leggere l'anagrafica utenti '%1'",
     "The users register '%1' cannot be read",
     "Impossible de lire la liste des utilisateurs '%1'",
     "Die Benutzerliste '%1' kann nicht gelesen werden"},
    /* BandsUnreadable */
    {"Impossibile leggere le fasce orarie '%1': l'interfaccia resta disabilitata",
     "The time bands '%1' cannot be read: the interface stays disabled",
     "Impossible de lire les tranches horaires '%1': l'interface reste invalidée",
     "Die Zeitabschnitte '%1' können nicht gelesen werden: die Schnittstelle bleibt gesperrt"},
    /* HolidaysUnreadable */
    {"Impossibile leggere le ferie '%1': nessun giorno conta come festivo",
     "The holidays '%1' cannot be read: no day counts as a holiday",
     "Impossible de lire les congés '%1': aucun jour ne compte comme congé",
     "Die Ferien '%1' können nicht gelesen werden: kein Tag gilt als Ferientag"},
    /* RegisterTriedAgain */
    {"L'anagrafica utenti '%1' viene riletta ogni secondo finché non è disponibile",
     "The users register '%1' is tried again every second until it can be read",
     "La liste des utilisateurs '%1' est relue chaque seconde jusqu'à ce qu'elle soit disponible",
     "Die Benutzerliste '%1' wird jede Sekunde erneut gelesen, bis sie verfügbar ist"},
    /* PasswordNeedsTerminal */
    {"È attiva la password principale: serve un terminale per digitarla, oppure --password-file.",
     "The main password is set: a terminal is needed to type it, or --password-file.",
     "Le password principal est actif: il faut un terminal pour l'introduire, ou --password-file.",
     "Das Hauptpassword ist aktiv: zur Eingabe ist ein Terminal nötig, oder --password-file."},
    /* PasswordFileUnusable */
    {"Il file della password '%1' deve esistere ed essere leggibile solo dal suo proprietario.",
     "The password file '%1' must exist and be readable by its owner only.",
     "Le fichier du password '%1' doit exister et n'être lisible que par son propriétaire.",
     "Die Passworddatei '%1' muss vorhanden und nur für ihren Besitzer lesbar sein."},
    /* PasswordNotGiven */
    {"Nessuna password digitata.", "No password was typed.", "Aucun password introduit.", "Kein Password eingegeben."},
    /* LineReleased */
    {"Interfaccia abilitata (%1)", "Interface enabled (%1)", "Interface validée (%1)",
     "Schnittstelle freigegeben (%1)"},
    /* LineAsserted */
    {"Interfaccia disabilitata (%1)", "Interface disabled (%1)", "Interface invalidée (%1)",
     "Schnittstelle gesperrt (%1)"},
    /* CauseStart */
    {"avvio del programma", "program start", "démarrage du programme", "Programmstart"},
    /* CauseBand */
    {"fascia oraria", "time band", "tranche horaire", "Zeitabschnitt"},
    /* CauseHoliday */
    {"ferie", "holiday", "congés", "Ferien"},
    /* CauseEnd */
    {"fine del programma", "program end", "fin du programme", "Programmende"},
    /* PortBack */
    {"La porta seriale COM%1 è di nuovo disponibile.",
     "The serial port COM%1 is available again.",
     "Le port sériel COM%1 est à nouveau disponible.",
     "Der serielle Anschluss COM%1 ist wieder verfügbar."},
    /* ConsoleStarted */
    {"Cartella: %1 - Fine con Ctrl+C",
     "Folder: %1 - End with Ctrl+C",
     "Dossier: %1 - Fin avec Ctrl+C",
     "Ordner: %1 - Ende mit Strg+C"},
    /* ConsoleDemo */
    {"Dimostrazione: l'interfaccia è simulata, i dati vengono eliminati alla fine.",
     "Demonstration: the interface is simulated, its data are removed at the end.",
     "Démonstration: l'interface est simulée, les données sont éliminées à la fin.",
     "Vorführung: die Schnittstelle ist simuliert, die Daten werden am Ende entfernt."},
    /* DemoCannotStart */
    {"Impossibile avviare l'interfaccia simulata '%1'",
     "The simulated interface '%1' cannot be started",
     "Impossible de démarrer l'interface simulée '%1'",
     "Die simulierte Schnittstelle '%1' kann nicht gestartet werden"},
    /* Notice */
    {"AVVISO", "NOTICE", "AVIS", "HINWEIS"},
    /* LedUnknown */
    {"Stato dell'interfaccia non ancora noto", "State of the interface not known yet",
     "État de l'interface pas encore connu", "Zustand der Schnittstelle noch nicht bekannt"},
    /* RtsAsserted */
    {"linea RTS attiva", "RTS line asserted", "ligne RTS active", "RTS-Leitung aktiv"},
    /* RtsReleased */
    {"linea RTS rilasciata", "RTS line released", "ligne RTS relâchée", "RTS-Leitung inaktiv"},
    /* RtsNotKnown */
    {"linea RTS non verificabile", "RTS line cannot be read", "ligne RTS non vérifiable", "RTS-Leitung nicht lesbar"},
    /* PortTestRuns */
    {"Prova della porta COM%1 in corso...",
     "Testing port COM%1...",
     "Test du port COM%1 en cours...",
     "Anschluss COM%1 wird getestet..."},
    /* NoPortAvailable */
    {"Nessuna porta seriale disponibile!\r\nCollegare un adattatore e rispondere No per cercare di nuovo.\r\n"
     "Terminare il programma?",
     "No serial port is available!\r\nConnect an adapter and answer No to search again.\r\n"
     "End the program?",
     "Aucun port sériel disponible!\r\nBrancher un adaptateur et répondre Non pour relancer la recherche.\r\n"
     "Terminer le programme?",
     "Kein serieller Anschluss verfügbar!\r\nEinen Adapter anschließen und mit Nein antworten, um erneut zu suchen.\r\n"
     "Programm beenden?"},
    /* ReadingRuns */
    {"Lettura in corso...", "Reading...", "Lecture en cours...", "Lesevorgang läuft..."},
    /* ZoomIn */
    {"Ingrandisci", "Zoom in", "Agrandir", "Vergrößern"},
    /* ZoomOut */
    {"Riduci", "Zoom out", "Réduire", "Verkleinern"},
    /* ZoomToWidth */
    {"Adatta alla larghezza", "Fit to width", "Adapter à la largeur", "An Breite anpassen"},
    /* ArchiveNotOpened */
    {"Impossibile aprire l'archivio '%1' per modificarlo",
     "The archive '%1' cannot be opened to be edited",
     "Impossible d'ouvrir l'archive '%1' pour la modifier",
     "Das Archiv '%1' kann nicht zum Bearbeiten geöffnet werden"},
    /* ArchiveNotSaved */
    {"Impossibile salvare i cambiamenti all'archivio '%1'",
     "The changes to the archive '%1' cannot be saved",
     "Impossible de sauvegarder les modifications de l'archive '%1'",
     "Die Änderungen am Archiv '%1' können nicht gespeichert werden"},
    /* ArchiveNotChanged */
    {"Impossibile eseguire il cambiamento all'archivio '%1'",
     "The change to the archive '%1' cannot be made",
     "Impossible d'effectuer la modification de l'archive '%1'",
     "Die Änderung am Archiv '%1' kann nicht ausgeführt werden"},
    /* Marked */
    {"attivo", "marked", "actif", "aktiv"},
    /* NotMarked */
    {"non attivo", "not marked", "non actif", "nicht aktiv"},
    /* SearchNotPossible */
    {"La ricerca degli eventi non è possibile", "Events cannot be searched",
     "La recherche des évènements n'est pas possible", "Die Ereignissuche ist nicht möglich"},
    /* SearchBrokenOff */
    {"La ricerca è stata interrotta: gli eventi trovati non possono essere conservati",
     "The search was broken off: the events found cannot be kept",
     "La recherche a été interrompue: les évènements trouvés ne peuvent pas être conservés",
     "Die Suche wurde abgebrochen: Die gefundenen Ereignisse können nicht aufbewahrt werden"},
    /* DaysNotRead */
    {"Gli archivi di questi giorni non sono stati letti, o non per intero: %1",
     "The archives of these days were not read, or not completely: %1",
     "Les archives de ces jours n'ont pas été lues, ou pas entièrement: %1",
     "Die Archive dieser Tage wurden nicht oder nicht vollständig gelesen: %1"},
    /* DayNotShown */
    {"Gli eventi del giorno non possono essere letti", "The events of the day cannot be read",
     "Les évènements du jour ne peuvent pas être lus", "Die Ereignisse des Tages können nicht gelesen werden"},
    /* ResultsUnreadable */
    {"Gli eventi trovati non possono più essere letti", "The events found can no longer be read",
     "Les évènements trouvés ne peuvent plus être lus", "Die gefundenen Ereignisse können nicht mehr gelesen werden"},
    /* PrinterGone */
    {"La stampante scelta, la n. %1 dell'elenco, non è più installata: sceglierne un'altra.",
     "The chosen printer, no. %1 of the list, is no longer installed: choose another one.",
     "L'imprimante choisie, n° %1 de la liste, n'est plus installée: en choisir une autre.",
     "Der gewählte Drucker, Nr. %1 der Liste, ist nicht mehr installiert: einen anderen wählen."},
    /* PrintNotMade */
    {"Impossibile stampare su '%1'",
     "Printing on '%1' is not possible",
     "Impossible d'imprimer sur '%1'",
     "Drucken auf '%1' nicht möglich"},
    /* PrintFontMissing */
    {"Impossibile stampare: manca il carattere '%1'.",
     "Printing is not possible: the font '%1' is missing.",
     "Impossible d'imprimer: la police '%1' est absente.",
     "Drucken nicht möglich: die Schrift '%1' fehlt."},
    /* FileNotWritten */
    {"Impossibile scrivere il file '%1'", "The file '%1' cannot be written", "Impossible d'écrire le fichier '%1'",
     "Die Datei '%1' kann nicht geschrieben werden"},
    /* PortNotOpened */
    {"La porta seriale COM%1 non può essere aperta",
     "The serial port COM%1 cannot be opened",
     "Le port sériel COM%1 ne peut pas être ouvert",
     "Der serielle Anschluss COM%1 kann nicht geöffnet werden"},
    /* PortTriedAgain */
    {"Viene riprovata ogni cinque secondi.",
     "It is tried again every five seconds.",
     "Nouvel essai toutes les cinq secondes.",
     "Alle fünf Sekunden wird es erneut versucht."},
    /* AskEndSupervision */
    {"La supervisione termina: gli eventi non vengono più ricevuti. Chiudere il programma?",
     "Supervision ends: events are no longer received. Close the program?",
     "La supervision se termine: les évènements ne sont plus reçus. Fermer le programme?",
     "Die Überwachung endet: Ereignisse werden nicht mehr empfangen. Programm beenden?"},
    /* AskEndEventsLost */
    {"Eventi che non possono essere memorizzati e andranno persi: %1. Chiudere il programma?",
     "Events that cannot be stored and will be lost: %1. Close the program?",
     "Évènements qui ne peuvent pas être mémorisés et seront perdus: %1. Fermer le programme?",
     "Ereignisse, die nicht gespeichert werden können und verloren gehen: %1. Programm beenden?"},
    /* ButtonSearchAgain */
    {"&Cerca di nuovo",
     "&Search again",
     "&Chercher à nouveau",
     "&Erneut suchen"},
    /* ButtonEnd */
    {"&Termina",
     "&End",
     "&Terminer",
     "&Beenden"},
    /* EventsWaitOnDisk */
    {"Eventi in attesa su disco: %1",
     "Events waiting on disk: %1",
     "Évènements en attente sur disque: %1",
     "Auf dem Datenträger wartende Ereignisse: %1"},
    /* EventsWaitInMemory */
    {"Nulla viene memorizzato: gli eventi attendono in memoria (%1)",
     "Nothing is stored: events wait in memory (%1)",
     "Rien n'est mémorisé: les évènements attendent en mémoire (%1)",
     "Nichts wird gespeichert: Ereignisse warten im Arbeitsspeicher (%1)"},
    /* NothingIsStored */
    {"Nessun evento viene memorizzato",
     "No event is stored",
     "Aucun évènement n'est mémorisé",
     "Es wird kein Ereignis gespeichert"},
    /* EventsUndecided */
    {"Eventi persi di codici forse registrati: %1",
     "Events lost of codes that may be registered: %1",
     "Évènements perdus de codes peut-être enregistrés: %1",
     "Verlorene Ereignisse mit vielleicht registrierten Codes: %1"},
    /* SpoolUnusable */
    {"Gli eventi in attesa '%1' non possono essere letti",
     "The waiting events '%1' cannot be read",
     "Les évènements en attente '%1' ne peuvent pas être lus",
     "Die wartenden Ereignisse '%1' können nicht gelesen werden"},
    /* SpoolSetAside */
    {"Il file degli eventi in attesa '%1' era danneggiato: è stato messo da parte come '%2'.",
     "The file of the waiting events '%1' was damaged: it has been set aside as '%2'.",
     "Le fichier des évènements en attente '%1' était endommagé: il a été mis de côté sous '%2'.",
     "Die Datei der wartenden Ereignisse '%1' war beschädigt: Sie wurde als '%2' beiseitegelegt."},
    /* DayReplaced */
    {"L'archivio eventi '%1' è stato sostituito o eliminato mentre era aperto. Eventi riportati in quello nuovo: %2",
     "The event archive '%1' was replaced or deleted while it was open. Events brought into the new one: %2",
     "L'archive des évènements '%1' a été remplacée ou supprimée pendant qu'elle était ouverte. Évènements transférés dans la nouvelle: %2",
     "Das Ereignisarchiv '%1' wurde im geöffneten Zustand ersetzt oder gelöscht. In das neue übernommene Ereignisse: %2"},
    /* RegisterMissing */
    {"L'anagrafica utenti '%1' manca, ma la cartella è già stata usata: ripristinarla da '%2'.",
     "The users register '%1' is missing, though the folder has been in use: restore it from '%2'.",
     "La liste des utilisateurs '%1' manque, bien que le dossier ait déjà servi: la rétablir à partir de '%2'.",
     "Die Benutzerliste '%1' fehlt, obwohl der Ordner schon benutzt wurde: aus '%2' wiederherstellen."},
    /* RegisterLinkLeadsNowhere */
    {"L'anagrafica utenti '%1' è un collegamento che non porta ad alcun file: '%2'.",
     "The users register '%1' is a link that leads to no file: '%2'.",
     "La liste des utilisateurs '%1' est un lien qui ne mène à aucun fichier: '%2'.",
     "Die Benutzerliste '%1' ist eine Verknüpfung, die zu keiner Datei führt: '%2'."},
    /* RegisterDamaged */
    {"L'anagrafica utenti '%1' è danneggiata: ripristinarla da '%2'.",
     "The users register '%1' is damaged: restore it from '%2'.",
     "La liste des utilisateurs '%1' est endommagée: la rétablir à partir de '%2'.",
     "Die Benutzerliste '%1' ist beschädigt: aus '%2' wiederherstellen."},
    /* SettingMissing */
    {"L'impostazione '%1' manca: vale il valore iniziale '%2'.",
     "The setting '%1' is missing: the initial value '%2' counts.",
     "Le réglage '%1' est absent: la valeur initiale '%2' est appliquée.",
     "Die Einstellung '%1' fehlt: Es gilt der Anfangswert '%2'."},
    /* DaysIncomplete */
    {"Gli eventi di questi giorni sono incompleti: %1",
     "The events of these days are incomplete: %1",
     "Les évènements de ces jours sont incomplets: %1",
     "Die Ereignisse dieser Tage sind unvollständig: %1"},
    /* EventsFound */
    {"Eventi trovati: %1",
     "Events found: %1",
     "Évènements trouvés: %1",
     "Gefundene Ereignisse: %1"},
    /* HelpDescription */
    {"Supervisore dell'interfaccia multiprotocollo Kor: riceve gli eventi e li conserva nell'archivio del giorno.",
     "Supervisor of the Kor multiprotocol interface: receives its events and keeps them in the archive of the day.",
     "Superviseur de l'interface multiprotocole Kor: reçoit les évènements et les conserve dans l'archive du jour.",
     "Überwachung der Kor-Multiprotokoll-Schnittstelle: empfängt Ereignisse und speichert sie im Archiv des Tages."},
    /* HelpConsole */
    {"Mostra gli eventi sul terminale, senza finestra.",
     "Tell what happens on the terminal, without a window.",
     "Affiche ce qui se passe sur le terminal, sans fenêtre.",
     "Zeigt auf dem Terminal, was geschieht, ohne Fenster."},
    /* HelpDemo */
    {"Lavora con un'interfaccia simulata in una cartella che alla fine viene eliminata.",
     "Work with a simulated interface in a folder that is removed at the end.",
     "Travaille avec une interface simulée dans un dossier éliminé à la fin.",
     "Arbeitet mit einer simulierten Schnittstelle in einem Ordner, der am Ende gelöscht wird."},
    /* HelpFolder */
    {"Cartella del programma con gli archivi; se manca, quella del programma stesso.",
     "Program folder with the archives; the program's own by default.",
     "Dossier du programme avec les archives; par défaut celui du programme lui-même.",
     "Programmordner mit den Archiven; ohne Angabe der des Programms selbst."},
    /* HelpPasswordFile */
    {"Con --console: la password principale è la prima riga di FILE, leggibile solo dal suo proprietario.",
     "With --console: the main password is the first line of FILE, which only its owner may read.",
     "Avec --console: le password principal est la première ligne de FILE, lisible par son seul propriétaire.",
     "Mit --console: das Haupt-Password ist die erste Zeile von FILE, die nur der Besitzer lesen darf."},
    /* HelpPort */
    {"Sceglie la porta seriale da COM1 a COM8 e la ricorda.",
     "Choose serial port COM1 to COM8 and remember it.",
     "Choisit le port sériel de COM1 à COM8 et le garde.",
     "Wählt den seriellen Anschluss COM1 bis COM8 und merkt ihn sich."},
    /* HelpHelp */
    {"Mostra questo aiuto.",
     "Show this help.",
     "Affiche cette aide.",
     "Zeigt diese Hilfe."},
    /* HelpVersion */
    {"Mostra la versione.",
     "Show the version.",
     "Affiche la version.",
     "Zeigt die Version."},
    /* HelpUsage */
    {"Uso: %1",
     "Usage: %1",
     "Utilisation: %1",
     "Aufruf: %1"},
    /* HelpOptions */
    {"Opzioni:",
     "Options:",
     "Options:",
     "Optionen:"},
    /* ArgumentUnexpected */
    {"Argomento inatteso: '%1'.",
     "Unexpected argument: '%1'.",
     "Argument inattendu: '%1'.",
     "Unerwartetes Argument: '%1'."},
    /* ArgumentUnknown */
    {"Opzione sconosciuta: '%1'.",
     "Unknown option: '%1'.",
     "Option inconnue: '%1'.",
     "Unbekannte Option: '%1'."},
    /* ArgumentWithoutValue */
    {"Manca il valore dell'opzione '%1'.",
     "The value of the option '%1' is missing.",
     "La valeur de l'option '%1' est absente.",
     "Der Wert der Option '%1' fehlt."},
    /* ArgumentsExclude */
    {"--demo lavora in una cartella e su una porta proprie: omettere --folder e --port.",
     "--demo works in a folder and on a port of its own: leave out --folder and --port.",
     "--demo travaille dans un dossier et sur un port qui lui sont propres: omettre --folder et --port.",
     "--demo arbeitet in einem eigenen Ordner und an einem eigenen Anschluss: --folder und --port weglassen."},
    /* ArgumentPortRange */
    {"--port vuole un numero da 1 a 8, non '%1'.",
     "--port takes a number from 1 to 8, not '%1'.",
     "--port demande un nombre de 1 à 8, pas '%1'.",
     "--port erwartet eine Zahl von 1 bis 8, nicht '%1'."},
    /* NoDisplay */
    {"Non c'è uno schermo per la finestra: aggiungere --console per lavorare sul terminale.",
     "There is no display for the window: add --console to work on the terminal.",
     "Il n'y a pas d'écran pour la fenêtre: ajouter --console pour travailler sur le terminal.",
     "Es gibt keine Anzeige für das Fenster: mit --console auf dem Terminal arbeiten."},
    /* AboutLicence */
    {"Licenza: %1",
     "Licence: %1",
     "Licence: %1",
     "Lizenz: %1"},
    /* AboutLibraries */
    {"Librerie: %1",
     "Libraries: %1",
     "Bibliothèques: %1",
     "Bibliotheken: %1"},
    /* AboutData */
    {"Dati: %1",
     "Data: %1",
     "Données: %1",
     "Daten: %1"},
    /* ReasonNotFound */
    {"non esiste", "does not exist", "n'existe pas", "nicht vorhanden"},
    /* ReasonAccessDenied */
    {"accesso negato", "access denied", "accès refusé", "Zugriff verweigert"},
    /* ReasonAlreadyInUse */
    {"già in uso", "already in use", "déjà utilisé", "schon in Gebrauch"},
    /* ReasonLocked */
    {"bloccato da un altro programma",
     "locked by another program",
     "bloqué par un autre programme",
     "von einem anderen Programm gesperrt"},
    /* ReasonDiskFull */
    {"disco pieno", "disk full", "disque plein", "Datenträger voll"},
    /* ReasonInputOutput */
    {"errore di lettura o scrittura",
     "read or write error",
     "erreur de lecture ou d'écriture",
     "Lese- oder Schreibfehler"},
    /* ReasonDamaged */
    {"danneggiato o estraneo al programma",
     "damaged or not the program's own",
     "endommagé ou étranger au programme",
     "beschädigt oder programmfremd"},
    /* ReasonTemplateDamaged */
    {"il modello d'archivio è danneggiato", "the archive template is damaged", "le modèle d'archive est endommagé",
     "die Archivvorlage ist beschädigt"},
    /* ReasonNotRegularFile */
    {"non è un file normale",
     "not a regular file",
     "pas un fichier ordinaire",
     "keine gewöhnliche Datei"},
    /* ReasonTooLarge */
    {"file troppo grande",
     "file too large",
     "fichier trop grand",
     "Datei zu groß"},
    /* ReasonNotOpen */
    {"non aperto", "not open", "non ouvert", "nicht geöffnet"},
}};
// clang-format on
