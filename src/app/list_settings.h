#pragma once

#include "app/setting.h"

/// Stations, presets and lists.
class StationSettings {
    SettingsStore& m_file;

  public:
    explicit StationSettings(SettingsStore& store) : m_file(store) {}

    BoolSetting ShowStationMenus{m_file, "ShowStationMenus", "true"};
    BoolSetting SortSearchResults{m_file, "SortSearchResults", "true"};
    BoolSetting DoNotShowInfoStations{m_file, "DoNotShowInfoStations", "true"};
    BoolSetting UseOnlineDatabase{m_file, "UseOnlineDatabase", "true"};
    BoolSetting ShowGroupsFirst{m_file, "ShowGroupsFirst", "false"};
    BoolSetting AdvancedListSearching{m_file, "AdvancedListSearching", "false"};
    BoolSetting DoNotExpandGroups{m_file, "DoNotExpandGroups", "false"};
    BoolSetting ShowCommentsColumn{m_file, "ShowCommentsColumn", "false"};
    BoolSetting GroupStationsByGenreInBrowser{m_file, "GroupStationsByGenreInBrowser", "false"};
    BoolSetting UseXmlStationsApi{m_file, "UseXmlStationsApi", "false"};
    BoolSetting ShowRadioSearchAPI{m_file, "ShowRadioSearchAPI", "false"};
    BoolSetting InMemorySearchSet{m_file, "InMemorySearchSet", "false"};
    BoolSetting ShownInMemoryMess{m_file, "ShownInMemoryMess", "false"};
    BoolSetting Presets{m_file, "Presets", "false"};
    BoolSetting SkylarkVersion{m_file, "SkylarkVersion", "true"};
    IntSetting NewStationsDays{m_file, "NewStationsDays", "14"};
    IntSetting GroupingOrder{m_file, "GroupingOrder", "0"};
    IntSetting TreeStationsSortColumn{m_file, "TreeStationsSortColumn", "-1"};
    IntSetting TreeFavoritesSortColumn{m_file, "TreeFavoritesSortColumn", "-1"};
    IntSetting RadioSearchAPI{m_file, "RadioSearchAPI", "2"};
    IntSetting MaxSearchHistory{m_file, "MaxSearchHistory", "100"};
    TextSetting RandomGenre{m_file, "RandomGenre"};
    TextSetting LastPresetCategory{m_file, "LastPresetCategory"};
    TextSetting LastPresetCheckDate{m_file, "LastPresetCheckDate"};
    IntSetting PresetsVersion{m_file, "PresetsVersion", "900"};
    IntSetting PresetCheckDays{m_file, "PresetCheckDays", "7"};
    TextSetting PresetsFileCompressed{m_file, "PresetsFileCompressed", "presets.xml.gz"};
    TextSetting PresetsFileUncompressed{m_file, "PresetsFileUncompressed", "presets.trd"};
    TextSetting PresetsFileEncrypted{m_file, "PresetsFileEncrypted", "presets.trd"};
    TextSetting SourceFile1{m_file, "SourceFile1"};
    TextSetting SourceFile2{m_file, "SourceFile2"};
    TextSetting SourceFile3{m_file, "SourceFile3"};
    TextSetting SourceFile4{m_file, "SourceFile4"};
    TextSetting SourceFile5{m_file, "SourceFile5"};
};

/// Favorites; LastFavoritesFile has its own rule in AppSettings.
class FavoriteSettings {
    SettingsStore& m_file;

  public:
    explicit FavoriteSettings(SettingsStore& store) : m_file(store) {}

    BoolSetting BackupFavs{m_file, "BackupFavs", "true"};
    BoolSetting DoBackupFavsOnline{m_file, "DoBackupFavsOnline", "false"};
    IntSetting NumFavBackups{m_file, "NumFavBackups", "3"};
    BoolSetting ShowFlagsInFavsMenu{m_file, "ShowFlagsInFavsMenu", "true"};
    TextSetting FavoritesFile{m_file, "FavoritesFile"};
    BoolSetting AlphabetizeFavsMenu{m_file, "AlphabetizeFavsMenu"};
};

/// Podcasts and episode downloads; PodcastCountryCode has its own rule in AppSettings.
class PodcastSettings {
    SettingsStore& m_file;

  public:
    explicit PodcastSettings(SettingsStore& store) : m_file(store) {}

    TextSetting PodcastsDefaultCountry{m_file, "PodcastsDefaultCountry", "USA"};
    IntSetting MaxPodcastEpisodes{m_file, "MaxPodcastEpisodes", "50"};
    IntSetting MaxPodcastEpisodesMenu{m_file, "MaxPodcastEpisodesMenu", "10"};
    // The misspelt AutoCkeck... is deliberate: files hold it.
    BoolSetting ShowAllPodcastEpisodes{m_file, "ShowAllPodcastEpisodes", "false"};
    BoolSetting PodcastMenuAlphabetically{m_file, "PodcastMenuAlphabetically", "false"};
    BoolSetting UseNewPodcastsTree{m_file, "UseNewPodcastsTree", "false"};
    BoolSetting AutoDownloadPodcastEpisodes{m_file, "AutoDownloadPodcastEpisodes", "false"};
    BoolSetting AutoCkeckForNewPodcastEpisodes{m_file, "AutoCkeckForNewPodcastEpisodes", "false"};
    BoolSetting ShowPodcastLogos{m_file, "ShowPodcastLogos", "true"};
    BoolSetting AutoAdvancePodcasts{m_file, "AutoAdvancePodcasts", "true"};
    BoolSetting PodcastsToggleExpanding{m_file, "PodcastsToggleExpanding", "true"};
    IntSetting PodcastEpisodeSortColumn{m_file, "PodcastEpisodeSortColumn", "-1"};
    BoolSetting OpenFileAfterDownloadingPodcastEpisode{m_file,
                                                       "OpenFileAfterDownloadingPodcastEpisode"};
};
